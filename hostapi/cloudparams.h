#pragma once
#include <QJsonObject>
#include <QString>

// Parameters of a cloud search or check: the feature guide fills search text,
// page and page size; the material check sets the case-project flag, the tax
// basis and the place code, and the host fills time and place.
class CloudParams
{
public:
    QString getSearchText() const { return m_searchText; }
    int getPage() const { return m_page; }
    int getPageSize() const { return m_pageSize; }
    // True when prices come from the Korvane cloud's case projects ("案例工程").
    bool getCaseProject() const { return m_caseProject; }
    // 1 prices including tax, 0 prices excluding tax.
    int getTaxBasis() const { return m_taxBasis; }
    QString getPlaceCode() const { return m_placeCode; }
    QString getPlace() const { return m_place; }
    QString getTime() const { return m_time; }

    void setSearchText(const QString &v) { m_searchText = v; }
    void setPage(int v) { m_page = v; }
    void setPageSize(int v) { m_pageSize = v; }
    void setCaseProject(bool v) { m_caseProject = v; }
    void setTaxBasis(int v) { m_taxBasis = v; }
    void setPlaceCode(const QString &v) { m_placeCode = v; }
    void setPlace(const QString &v) { m_place = v; }
    void setTime(const QString &v) { m_time = v; }

    // Keys: "keyword", "page", "pageSize", "isAlgc", "hsbz", "ddCode", "dd", "sj".
    QJsonObject toJson() const;
    static CloudParams fromJson(const QJsonObject &params);

private:
    QString m_searchText;
    int m_page = 1;
    int m_pageSize = 10;
    bool m_caseProject = false;
    int m_taxBasis = 1;
    QString m_placeCode;
    QString m_place;
    QString m_time;
};
