#pragma once
#include <cloud/cloudserverowner.h>

#include <hostapi/cloudzjbean.h>
#include <hostapi/ztitlemodal.h>

#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

class BaseDataItem;
class CloudServerCombox;
class LtdInfo;
class PriceComparison;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class TVelQddjjc_Yxys;
class zBaseCombox;
class zStandardTreeNodeData;
class CloudBillDetails;
class zTabContent;
class zTableModel;
class zTableView;
class zTreeModel;
class zTreeView;

// The unit-price check browser: one bill of the project against the unit
// prices of its most similar cloud bills, with the cloud bills' features,
// composition and source project. The host fills it and answers its requests.
class TVelQddjjc : public zTitleModal, public CloudServerOwner
{
    Q_OBJECT
public:
    explicit TVelQddjjc(QWidget *parent = nullptr);

    void CreateUI();
    void InitUI();

    void setItemId(QString &id);
    void setItemName(QString &name);
    void setTime(QString &time);
    void setPlace(QString &place);
    void setAltitude(QString &altitude);
    void setJsType(QString &jsType);
    void setZhdj(double zhdj);
    void setMatchNum(int matchNum);
    void SetCurQd(BaseDataItem *item);
    void setXMxx(QString projectInfo, QString features, zStandardTreeNodeData *composition);
    void setCloudDjData(QStringList &data);

    void setLblSjsj(const QString &text);
    void setLblDdsj(const QString &text);
    void setLblHbsj(const QString &text);
    void setLblJssj(const QString &text);
    void setLblXmmcData(const QString &text);

    QString getSJ() const { return m_time; }
    QString getDD() const { return m_place; }
    int matchNum() const;

    zTableModel *listModel() const { return m_listModel; }
    zTableView *listView() const { return m_list; }
    zTreeModel *compositionModel() const;
    zTreeView *compositionView() const;
    zTabContent *detailTabs() const;
    QString firstTabText() const;
    QString projectInfoText() const;
    zBaseCombox *matchCombo() const { return m_comPpgs; }
    QPushButton *checkButton() const { return m_btnDjjc; }
    QPushButton *previousButton() const { return m_btnPrevious; }
    QPushButton *nextButton() const { return m_btnNext; }
    QPushButton *modifyButton() const { return m_btnXg; }
    QLabel *label(const QString &objectName) const;
    int shownBill() const { return m_shown; }
    QList<CloudZjBean> cloudBills() const { return m_bills; }

    void actCancel() override;

signals:
    void signalItemIdChanged();
    void signalItemNameChanged();
    void signalTimeChanged();
    void signalPlaceChanged();
    void signalAltitudeChanged();
    void signalJsTypeChanged();
    void signalCloudDjDataChanged();
    void signalGetQjyData(LtdInfo *server, int &matchNum);
    void signalPreviousPage();
    void signalNextPage();
    void signalYxysChanged(QString sj, QString dd);

public slots:
    void slotDetailXxData(int row, const QVariant &value = QVariant());
    void slotTimeAndPathChanged(const QString &sj, const QString &dd);

private slots:
    void slotItemIdChanged();
    void slotItemNameChanged();
    void slotTimeChanged();
    void slotPlaceChanged();
    void slotAltitudeChanged();
    void slotJsTypeChanged();
    void setZjData();
    void slotCheck();
    void Modification();
    void onBtnClose();

private:
    QWidget *buildHeader();
    QWidget *buildDetails();
    void declareColumns();
    void clearResult();
    bool serverReady() const;
    void appendSummaryRow(const PriceComparison &comparison);

    BaseDataItem *m_curQd = nullptr;
    QString m_itemId;
    QString m_itemName;
    QString m_time;
    QString m_place;
    QString m_altitude;
    QString m_jsType;
    double m_zhdj = 0.0;
    QStringList m_cloudData;
    QList<CloudZjBean> m_bills;
    int m_shown = -1;

    CloudServerCombox *m_comServer = nullptr;
    zBaseCombox *m_comPpgs = nullptr;
    QPushButton *m_btnXg = nullptr;
    QPushButton *m_btnDjjc = nullptr;
    QPushButton *m_btnPrevious = nullptr;
    QPushButton *m_btnNext = nullptr;
    zTableModel *m_listModel = nullptr;
    zTableView *m_list = nullptr;
    CloudBillDetails *m_details = nullptr;
    QPointer<TVelQddjjc_Yxys> m_yxys;
};
