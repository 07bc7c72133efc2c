#pragma once
#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/ztitlemodal.h>

#include <QList>
#include <QModelIndex>

class GeneralTableBase;
class GljBean;
class QPushButton;
class zTableModel;
class zTableView;

// One row per project material beside its cloud price and deviation; the
// ticked materials' cloud prices go back to the host as one undo step.
class VelCjyjc_CheckResult : public zTitleModal
{
    Q_OBJECT
public:
    VelCjyjc_CheckResult(bool taxIncluded, QList<CloudCjyjcBean> &cloudRecords, QList<CloudCjyjcBean> &results,
                         GeneralTableBase *table, QWidget *parent = nullptr);

    // The project materials; with `fill` the grid is built from them at once.
    void setGljBean(QList<GljBean *> &materials, bool fill);
    bool CallBackTableEditorEnding(int role, const QModelIndex &index, const QVariant &value, QVariant &result);

    zTableModel *model() const { return m_model; }
    zTableView *view() const { return m_view; }
    QPushButton *okButton() const { return m_btnOk; }

public slots:
    void slotClCheckBoxClicked(QModelIndex index, Qt::CheckState state);
    void slotLinkClicked(const QModelIndex &index);
    void GbButton();

signals:
    void signalGbButtonClicked(QList<CloudCjyjcBean> &results);

private:
    void declareColumns();
    void fillRows();

    bool m_taxIncluded;
    QList<CloudCjyjcBean> &m_cloudRecords;
    QList<CloudCjyjcBean> &m_results;
    GeneralTableBase *m_table;
    QList<GljBean *> m_materials;
    zTableModel *m_model = nullptr;
    zTableView *m_view = nullptr;
    QPushButton *m_btnOk = nullptr;
};
