#pragma once
#include <QSortFilterProxyModel>

// Sorting and filtering of the report: a text found in code or name, and
// optionally only the bills beyond the deviation limit.
class PriceCheckReportFilter : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit PriceCheckReportFilter(QObject *parent = nullptr);

    void setText(const QString &text);
    void setOnlyBeyond(bool only);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    QString m_text;
    bool m_onlyBeyond = false;
};
