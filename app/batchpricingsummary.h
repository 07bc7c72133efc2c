#pragma once
#include "batchpricing.h"

#include <hostapi/ztitlemodal.h>

#include <QList>
#include <QVariant>

class BaseDataItem;
class QLabel;
class zTableModel;
class zTableView;

// What a batch pricing did, bill by bill (applied, no match, skipped with the
// reason); clicking a row makes its bill current in the host window.
class BatchPricingSummary : public zTitleModal
{
    Q_OBJECT
public:
    explicit BatchPricingSummary(QWidget *parent = nullptr);
    void setResult(const BatchPricing &pricing);

    zTableModel *tableModel() const { return m_model; }
    QString countsText() const;

signals:
    void signalOpenBill(BaseDataItem *bill);

private slots:
    void rowClicked(int row, const QVariant &value);

private:
    QLabel *m_lblCounts = nullptr;
    zTableModel *m_model = nullptr;
    zTableView *m_table = nullptr;
    QList<BaseDataItem *> m_bills;
};
