#pragma once
#include "pricingmatchreply.h"

#include <cloud/cloudreply.h>
#include <cloud/cloudserverowner.h>

#include <hostapi/ztitlemodal.h>

#include <QHash>
#include <QJsonObject>
#include <QPair>
#include <QPointer>
#include <QString>
#include <QVariant>

class BaseDataItem;
class CloudServerCombox;
class CloudSources;
class CloudWorkerRequest;
class JJBTableBase;
class QCheckBox;
class QLabel;
class QModelIndex;
class QMovie;
class QPlainTextEdit;
class QPushButton;
class TVelDqqdznzj_Yxys;
class WorkBaseObject;
class zFilterSearchBox;
class zTabContent;
class zTableModel;
class zTableView;
class zTreeModel;
class zTreeView;

// Prices the current bill from the cloud, one bill at a time: the match runs
// on a worker thread while the loading animation plays, the newest reply of
// the current bill is listed, and "选用" hands the chosen composition to the
// host, which writes it into the project.
class VelDqqdznzj : public zTitleModal, public CloudServerOwner
{
    Q_OBJECT
public:
    explicit VelDqqdznzj(QWidget *parent = nullptr);

    void CreateUI();
    void initData();
    void setCurrQd(BaseDataItem *item);
    void setCurrJjb(JJBTableBase *table);
    void setUnitWork(WorkBaseObject *unitWork);
    void setSjkm(QString sjkm);
    // Unchecks "自动匹配".
    void setAutoMatch();
    // Both source check states from the global settings.
    void setGcTypeChecked();

    BaseDataItem *currQd() const { return m_curQd; }
    unsigned generation() const { return m_generation; }
    bool isLoading() const;
    const PricingMatchReply &matchReply() const { return m_reply; }
    QVariantList uploadLibraries() const { return m_libraries; }
    QString firstTabText() const;
    QString projectInfoText() const;

    CloudSources *sources() const { return m_sources; }
    zTableModel *listModel() const { return m_listModel; }
    zTableView *listView() const { return m_list; }
    zTreeModel *compositionModel() const { return m_zjnrModel; }
    zTabContent *detailTabs() const { return m_tabs; }
    zFilterSearchBox *searchBox() const { return m_search; }
    QCheckBox *skipPricedBox() const { return m_chkTgyydj; }
    QCheckBox *replaceBox() const { return m_chkTh; }
    QCheckBox *autoMatchBox() const { return m_chkZdpp; }
    QPushButton *matchButton() const { return m_btnZjpp; }
    QPushButton *previousButton() const { return m_btnPrevious; }
    QPushButton *nextButton() const { return m_btnNext; }
    QPushButton *modifyButton() const { return m_btnXg; }

signals:
    void signalZjChecked(QJsonObject &bill, bool replace);
    void signalPreviousPage(bool skipPriced);
    void signalNextPage(bool skipPriced);
    void signalZjUpdata(int generation, BaseDataItem *bill);
    void signalYxysChanged(QString sj, QString dd);

public slots:
    void requestZjData();
    void slotZjUpdata(int generation, BaseDataItem *bill);
    void slotDetailXxData(int row, const QVariant &value = QVariant());
    void slotRequestXgServer(const QJsonObject &reply);
    void Modification();

private slots:
    void slotChoose(const QModelIndex &index);
    void slotPrevious();
    void slotNext();
    void showFees(const QModelIndex &index);
    void workerReplied(unsigned sequence, const CloudReply &reply);

private:
    QWidget *buildHeader();
    QWidget *buildSearchRow();
    QWidget *buildList();
    QWidget *buildDetails();
    void clearResult();
    void setLoading(bool loading);
    bool passesGuards();
    void fillList();
    void stopPending();
    void requestProjectInfo(const CloudZjBean &bill);

    BaseDataItem *m_curQd = nullptr;
    JJBTableBase *m_table = nullptr;
    WorkBaseObject *m_unitWork = nullptr;
    QString m_sjkm;
    unsigned m_generation = 0;
    QHash<unsigned, QPair<unsigned, BaseDataItem *>> m_pending;
    PricingMatchReply m_reply;
    int m_shown = -1;
    QVariantList m_libraries;

    CloudWorkerRequest *m_worker = nullptr;
    CloudServerCombox *m_comServer = nullptr;
    CloudSources *m_sources = nullptr;
    QLabel *m_lblQdbh = nullptr;
    QLabel *m_lblQdmc = nullptr;
    zFilterSearchBox *m_search = nullptr;
    QPushButton *m_btnZjpp = nullptr;
    QPushButton *m_btnXg = nullptr;
    QCheckBox *m_chkTgyydj = nullptr;
    QCheckBox *m_chkTh = nullptr;
    QCheckBox *m_chkZdpp = nullptr;
    QPushButton *m_btnPrevious = nullptr;
    QPushButton *m_btnNext = nullptr;
    zTableModel *m_listModel = nullptr;
    zTableView *m_list = nullptr;
    QLabel *m_lblLoading = nullptr;
    QMovie *m_movie = nullptr;
    zTabContent *m_tabs = nullptr;
    QPlainTextEdit *m_txtFirst = nullptr;
    zTreeModel *m_zjnrModel = nullptr;
    zTreeView *m_zjnr = nullptr;
    QPlainTextEdit *m_txtXmxx = nullptr;
    QPointer<TVelDqqdznzj_Yxys> m_yxys;
};
