#pragma once
#include "pricecheckreportrow.h"

#include <cloud/cloudserverowner.h>

#include <hostapi/basedataitem.h>

#include <QList>
#include <QWidget>

class CloudServerCombox;
class HostContext;
class PriceCheckReportChart;
class PriceCheckReportFilter;
class PriceCheckReportModel;
class PriceCheckReportRun;
class QCheckBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableView;
class zBaseCombox;

// The project unit-price check report: every bill of the project against the
// average of its most similar cloud bills, checked on a worker thread, with
// the bills beyond a deviation limit shaded here and in the bill tree.
class PriceCheckReportWindow : public QWidget, public CloudServerOwner
{
    Q_OBJECT
public:
    PriceCheckReportWindow(HostContext &host, QWidget *parent);

    // Starts the check of every bill of the project.
    void startCheck();
    void cancelCheck();
    bool isChecking() const;
    bool exportCsv(const QString &path) const;

    PriceCheckReportModel *model() const { return m_model; }
    PriceCheckReportFilter *filter() const { return m_filter; }
    PriceCheckReportRun *run() const { return m_run; }
    PriceCheckReportChart *chart() const { return m_chart; }
    QProgressBar *progressBar() const { return m_progress; }
    QDoubleSpinBox *limitBox() const { return m_limit; }
    zBaseCombox *matchCombo() const { return m_comPpgs; }
    QLabel *statusLabel() const { return m_status; }

signals:
    // The bills beyond the limit changed (the host shades them in its tree).
    void beyondBillsChanged(const QList<BaseDataItem *> &bills);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *buildControls();
    void runFinished();
    void runCancelled();
    void showProgress(int done, int total);
    void setChecking(bool checking);
    void limitChanged();
    bool paintNow();
    void chooseCsvFile();
    void goToBill(const QModelIndex &index);

    HostContext &m_host;
    PriceCheckReportModel *m_model = nullptr;
    PriceCheckReportFilter *m_filter = nullptr;
    PriceCheckReportRun *m_run = nullptr;
    PriceCheckReportChart *m_chart = nullptr;
    CloudServerCombox *m_comServer = nullptr;
    zBaseCombox *m_comPpgs = nullptr;
    QDoubleSpinBox *m_limit = nullptr;
    QPushButton *m_btnStart = nullptr;
    QPushButton *m_btnCancel = nullptr;
    QPushButton *m_btnExport = nullptr;
    QProgressBar *m_progress = nullptr;
    QLabel *m_status = nullptr;
    QLineEdit *m_search = nullptr;
    QCheckBox *m_onlyBeyond = nullptr;
    QTableView *m_table = nullptr;
    bool m_closed = false;
};
