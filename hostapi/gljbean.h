#pragma once
#include <QJsonObject>
#include <QString>

// One project material (工料机): code, name, model (规格型号), unit, category,
// origin, manufacturer, brand, quantity, base price and adjusted price. The key
// (Guid) is unique within the project and ties check records to the material.
class GljBean
{
public:
    int GetGuid() const { return m_guid; }
    QString GetBh() const { return m_bh; }
    QString GetClmc() const { return m_clmc; }
    QString GetGgxh() const { return m_ggxh; }
    QString GetDw() const { return m_dw; }
    QString GetZhfl() const { return m_zhfl; }
    QString GetCd() const { return m_cd; }
    QString GetCj() const { return m_cj; }
    QString GetPp() const { return m_pp; }
    double GetSl() const { return m_sl; }
    double GetDj() const { return m_dj; }
    // The adjusted price (调价), what the project uses.
    double GetTj() const { return m_tj; }

    void SetGuid(int v) { m_guid = v; }
    void SetBh(const QString &v) { m_bh = v; }
    void SetClmc(const QString &v) { m_clmc = v; }
    void SetGgxh(const QString &v) { m_ggxh = v; }
    void SetDw(const QString &v) { m_dw = v; }
    void SetZhfl(const QString &v) { m_zhfl = v; }
    void SetCd(const QString &v) { m_cd = v; }
    void SetCj(const QString &v) { m_cj = v; }
    void SetPp(const QString &v) { m_pp = v; }
    void SetSl(double v) { m_sl = v; }
    void SetDj(double v) { m_dj = v; }
    void SetTj(double v) { m_tj = v; }

    // Keys: "guid", "bh", "clmc", "ggxh", "dw", "zhfl", "cd", "cj", "pp",
    // "sl", "dj", "tj".
    static GljBean fromJson(const QJsonObject &material);
    QJsonObject toJson() const;

private:
    int m_guid = 0;
    QString m_bh;
    QString m_clmc;
    QString m_ggxh;
    QString m_dw;
    QString m_zhfl;
    QString m_cd;
    QString m_cj;
    QString m_pp;
    double m_sl = 0.0;
    double m_dj = 0.0;
    double m_tj = 0.0;
};
