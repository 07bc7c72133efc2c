#pragma once
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <hostapi/cloudservercombox.h>

class LtdInfo;
class QWidget;

// The server choice of a dialog with a server combo box: the server list, the
// chosen entry (remembered in "SysSet_.ini"), and the login of an entry that
// is not logged in. Dialogs embed one, connect its signals to their own data,
// call start() once, and expose its operations under their own names:
//
//   m_servers = new CloudServerChoice(comServer, this);
//   connect(m_servers, &CloudServerChoice::signalReloadData, this, &TFoo::initQdk);
//   connect(m_servers, &CloudServerChoice::signalClearData, this, &TFoo::clearQdk);
//   m_servers->start();
//   LtdInfo *TFoo::getCurrServer() { return m_servers->getCurrServer(); }
class CloudServerChoice : public QObject
{
    Q_OBJECT
public:
    // `combo` may be null (a dialog that shows no list); `dialog` parents the
    // component and the message boxes.
    CloudServerChoice(CloudServerCombox *combo, QWidget *dialog);

    // Server kind for the host's list (empty: the bill servers; "cj": the
    // material price servers). Set before start().
    void setServerKind(const QString &kind) { m_kind = kind; }
    // Whether "SaveBzQd" may keep "Korvane大数据" in the list (default true);
    // false always removes it.
    void setHonourSaveBzQd(bool honour) { m_honourSaveBzQd = honour; }

    // Start of the dialog: "SaveBzQd", requestServerList(), readSetting(),
    // then signalReloadData.
    void start();

    void requestServerList();
    int readSetting();
    LtdInfo *getCurrServer() const;
    bool getOwnerLogin() const { return m_ownLogin; }
    // signalClearData, then the list and the saved choice again.
    void resetData();

    // The checks before a step that needs a server: "请选择服务器" or
    // "请登录服务器" in a message box; false when the step must not be taken.
    bool checkServer(QWidget *parent) const;

    // Follows the host's login broker until disconnectBroker() (closeEvent).
    void connectBroker();
    void disconnectBroker();

    QList<LtdInfo *> &serverList() { return m_servers; }
    int currentIndex() const { return m_current; }
    int removedBigDataIndex() const { return m_removedBigData; }
    bool keepBigData() const { return m_keepBigData; }
    CloudServerCombox *combo() const { return m_combo; }

public slots:
    void slotSaveCurrServer(int index);
    void loginSuccessKv();
    void loginSuccessPri();
    // Broker reactions: rebuild the list, then signalServersReset.
    void resetPriData(const QString &serverName);
    void resetKvData();
    // Ignored while this dialog's own login runs (its callbacks handle it).
    void resetPriLogin(const QString &serverName);

signals:
    // Load the dialog's data for the current entry (e.g. the library list).
    void signalReloadData();
    // Clear the dialog's data (resetData).
    void signalClearData();
    // A login change elsewhere rebuilt the list (wizards go back to page one).
    void signalServersReset();

private:
    void closeLogin(int previous);
    void runLogin(int index, LtdInfo *entry, int previous);
    void saveChoice(const LtdInfo *entry) const;
    void showList();
    bool isValidIndex(int index) const { return index >= 0 && index < m_servers.size(); }

    QPointer<CloudServerCombox> m_combo;
    QPointer<QWidget> m_dialog;
    QList<LtdInfo *> m_servers;
    QString m_kind;
    int m_current = 0;
    int m_removedBigData = -1;
    bool m_keepBigData = false;
    bool m_honourSaveBzQd = true;
    bool m_ownLogin = false;
    QList<QMetaObject::Connection> m_broker;
};
