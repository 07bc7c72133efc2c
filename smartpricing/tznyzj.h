#pragma once
#include <cloud/cloudserverowner.h>

#include <hostapi/ltdinfo.h>
#include <hostapi/ztitlemodal.h>

#include <QString>
#include <QStringList>

class CloudServerCombox;
class CloudSources;
class JJBTableBase;
class QCheckBox;
class QLabel;
class WorkBaseObject;

// Setup of batch intelligent pricing: the server, whether priced bills are
// skipped and the sources of compositions. 确定 closes it and hands the
// choices to the host, which does the matching.
class TZnyzj : public zTitleModal, public CloudServerOwner
{
    Q_OBJECT
public:
    explicit TZnyzj(QWidget *parent = nullptr);

    void CreateUI();
    void setLblDqjjb(const QString &text);
    void setCurrJjb(JJBTableBase *table);
    void setUnitWork(WorkBaseObject *unitWork);
    void setSjkm(QString sjkm);

    CloudSources *sources() const { return m_sources; }
    QCheckBox *skipPricedBox() const { return m_chkYydj; }
    QLabel *scopeLabel() const { return m_lblDqjjb; }
    CloudServerCombox *serverCombo() const { return m_comServer; }

signals:
    void signalQdButtonClicked(LtdInfo server, bool skipPriced, int gcType, QStringList projectIds);

public slots:
    void QdButton();
    void GbButton();

private:
    QWidget *buildHeader();

    CloudServerCombox *m_comServer = nullptr;
    CloudSources *m_sources = nullptr;
    QCheckBox *m_chkYydj = nullptr;
    QLabel *m_lblDqjjb = nullptr;
    JJBTableBase *m_table = nullptr;
    WorkBaseObject *m_unitWork = nullptr;
    QString m_sjkm;
};
