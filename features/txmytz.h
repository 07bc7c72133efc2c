#pragma once
#include <cloud/cloudserverowner.h>

#include <hostapi/ztitlemodal.h>

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

class CloudSources;
class JJBTableBase;
class LtdInfo;
class QCheckBox;
class QLabel;
class WorkBaseObject;

// "项目云特征": the choices with which the host fills the item features of
// many bills from the cloud. The host's work on signalQdButtonClicked runs
// inside one undo record that the dialog opens and closes.
class TXmytz : public zTitleModal, public CloudServerOwner
{
    Q_OBJECT
public:
    explicit TXmytz(QWidget *parent = nullptr);

    void setCurrJjb(JJBTableBase *table);
    void setUnitWork(WorkBaseObject *unitWork);
    void SetSjkm(QString sjkm);
    void setLblDqjjb(const QString &text);
    void readGcid();
    void setGcCheckedName();

    // 0 none, 1 "标准清单", 2 "积累工程清单", 3 both.
    int sourceMask() const;
    QStringList projectIds() const;
    CloudSources *sources() const { return m_sources; }
    QCheckBox *skipPricedBox() const { return m_chkSkip; }

signals:
    void signalQdButtonClicked(LtdInfo *server, bool skipPriced, int sourceMask, QStringList projectIds);

public slots:
    void QdButton();
    void slotClearClicked();
    void slotGCSXClicked();
    void slotGCSXSured(const QList<QMap<QString, QVariant>> &projects);
    void gcTypeClicked();
    void actOk() override;

private:
    void CreateUI();
    void initIsFirst();

    JJBTableBase *m_table = nullptr;
    CloudSources *m_sources = nullptr;
    QCheckBox *m_chkSkip = nullptr;
    QLabel *m_lblDqjjb = nullptr;
};
