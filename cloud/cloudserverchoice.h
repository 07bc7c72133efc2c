#pragma once
#include <hostapi/cloudservercombox.h>
#include <hostapi/guardsite.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

class LtdInfo;
class QWidget;

// The server choice of a dialog with a server combo box: the server list, the
// chosen entry (remembered in "SysSet_.ini"), the login of an entry that is
// not logged in, and the host's login broker from start() until the owner's
// window closes. Failures are reported under the owning dialog (the site).
// Dialogs embed one through CloudServerOwner, which also gives them the
// operations under their usual names.
class CloudServerChoice : public QObject
{
    Q_OBJECT
public:
    // `combo` may be null (a dialog that shows no list); the site's owner
    // (the dialog or page holding the combo) parents the component.
    CloudServerChoice(CloudServerCombox *combo, const GuardSite &site);

    // Server kind for the host's list (empty: the bill servers; "cj": the
    // material price servers). Set before start().
    void setServerKind(const QString &kind) { m_kind = kind; }
    // Whether "SaveBzQd" may keep "Korvane大数据" in the list (default true);
    // false always removes it.
    void setHonourSaveBzQd(bool honour) { m_honourSaveBzQd = honour; }

    // Start of the dialog, once the owner sits in its window: follows the
    // login broker until that window closes, reads "SaveBzQd", then
    // requestServerList(), readSetting() and signalReloadData.
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

    bool followsBroker() const { return !m_broker.isEmpty(); }
    QList<LtdInfo *> &serverList() { return m_servers; }
    int currentIndex() const { return m_current; }
    int removedBigDataIndex() const { return m_removedBigData; }
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

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectBroker();
    void disconnectBroker();
    void closeLogin(int previous);
    void runLogin(int index, LtdInfo *entry, int previous);
    void saveChoice(const LtdInfo *entry) const;
    void showList();
    bool isValidIndex(int index) const { return index >= 0 && index < m_servers.size(); }

    GuardSite m_site;
    QPointer<CloudServerCombox> m_combo;
    QPointer<QWidget> m_window;
    QList<LtdInfo *> m_servers;
    QString m_kind;
    int m_current = 0;
    int m_removedBigData = -1;
    bool m_keepBigData = false;
    bool m_honourSaveBzQd = true;
    bool m_ownLogin = false;
    QList<QMetaObject::Connection> m_broker;
};
