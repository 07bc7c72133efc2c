#include "cloudserverchoice.h"
#include "cloudexchange.h"

#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/communication.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/hostconfig.h>
#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/messagebox.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/userlogin.h>
#include <hostapi/users.h>
#include <hostapi/usersyylogin.h>

#include <QEvent>
#include <QScopeGuard>
#include <QWidget>

namespace {
const QString kSettingKey = QStringLiteral("CloudApp/CurrServer_all");
const QString kPlaceholder = QStringLiteral("请选择服务器");
const QString kBigData = QStringLiteral("Korvane大数据");
}

CloudServerChoice::CloudServerChoice(CloudServerCombox *combo, const GuardSite &site)
    : QObject(site.owner()), m_site(site), m_combo(combo)
{
    if (m_combo)
        connect(m_combo, &CloudServerCombox::signalCurrentItemChanged, this, &CloudServerChoice::slotSaveCurrServer);
}

void CloudServerChoice::start()
{
    GUARDED(m_site, [&] {
        connectBroker();
        m_keepBigData = m_honourSaveBzQd && CloudExchange::configValue(QStringLiteral("SaveBzQd")) == QLatin1String("true");
        requestServerList();
        readSetting();
        emit signalReloadData();
    });
}

void CloudServerChoice::requestServerList()
{
    GUARDED(m_site, [&] {
        m_removedBigData = -1;
        CloudBusiness::requestServerList(m_servers, m_kind);
        if (m_keepBigData)
            return;
        for (int i = 0; i < m_servers.size(); ++i) {
            if (m_servers.at(i)->getServerName() == kBigData) {
                m_servers.removeAt(i);
                m_removedBigData = i;
                return;
            }
        }
    });
}

int CloudServerChoice::readSetting()
{
    return GUARDED_OR(-1, m_site, [&] {
        const QString saved = HostConfig::openSysSet()->value(kSettingKey).toString();
        int index = -1;
        if (!saved.isEmpty() && saved != kPlaceholder) {
            for (int i = 0; i < m_servers.size() && index < 0; ++i)
                if (m_servers.at(i)->getServerName() == saved && m_servers.at(i)->getServerLogin())
                    index = i;
        }
        for (int i = 0; i < m_servers.size() && index < 0; ++i)
            if (m_servers.at(i)->getServerLogin())
                index = i;
        m_current = index;
        showList();
        return index;
    });
}

LtdInfo *CloudServerChoice::getCurrServer() const
{
    return isValidIndex(m_current) ? m_servers.at(m_current) : nullptr;
}

void CloudServerChoice::resetData()
{
    GUARDED(m_site, [&] {
        emit signalClearData();
        requestServerList();
        readSetting();
    });
}

bool CloudServerChoice::checkServer(QWidget *parent) const
{
    const LtdInfo *server = getCurrServer();
    if (!server) {
        showMessageBox(QStringLiteral("请选择服务器"), parent);
        return false;
    }
    if (!server->getServerLogin()) {
        showMessageBox(QStringLiteral("请登录服务器"), parent);
        return false;
    }
    return true;
}

void CloudServerChoice::slotSaveCurrServer(int index)
{
    GUARDED(m_site, [&] {
        const int previous = m_current;
        m_current = index;
        LtdInfo *entry = getCurrServer();
        if (entry) {
            saveChoice(entry);
            if (!entry->getServerLogin())
                runLogin(index, entry, previous);
        }
        emit signalReloadData();
    });
}

void CloudServerChoice::runLogin(int index, LtdInfo *entry, int previous)
{
    QPointer<CloudServerChoice> self(this);
    m_ownLogin = true;
    // Cleared however the login ends, a throwing one included.
    const auto clearOwnLogin = qScopeGuard([self] {
        if (self)
            self->m_ownLogin = false;
    });
    if (!entry->getToken().contains(KvToken)) {
        // The host counts "Korvane大数据" in its list while logged in to the
        // Korvane cloud; this list may have lost it.
        const bool shift = Users::Instance()->Kvy()->IsLogin() && m_removedBigData != -1 && index >= m_removedBigData;
        userSyyLogin login(shift ? index + 1 : index, nullptr);
        login.SetKvyLoginSueecss([self] { if (self) self->loginSuccessPri(); });
        login.SetKvyClose([self, previous] { if (self) self->closeLogin(previous); });
        login.SyyExec();
    } else {
        userLogin login(nullptr);
        login.SetKvyLoginSueecss([self] { if (self) self->loginSuccessKv(); });
        login.SetKvyClose([self, previous] { if (self) self->closeLogin(previous); });
        login.KvyExec();
    }
}

void CloudServerChoice::closeLogin(int previous)
{
    if (previous == -1)
        m_current = -1;
    else
        m_current = isValidIndex(previous) && m_servers.at(previous)->getServerLogin() ? previous : -1;
}

void CloudServerChoice::loginSuccessKv()
{
    GUARDED(m_site, [&] {
        requestServerList();
        showList();
        emit signalReloadData();
        Communication::GetInstance()->SendMsg(4, 63, QVariant());
    });
}

void CloudServerChoice::loginSuccessPri()
{
    GUARDED(m_site, [&] {
        requestServerList();
        int noted = 0;
        for (int i = 0; i < m_servers.size(); ++i)
            if (m_current == -1 && m_servers.at(i)->getServerLogin())
                noted = i;
        // A noted 0 means "none": the entry at index 0 is never adopted here.
        if (m_current == -1 && noted != 0)
            m_current = noted;
        showList();
    });
}

void CloudServerChoice::resetPriData(const QString &)
{
    GUARDED(m_site, [&] {
        resetData();
        emit signalServersReset();
    });
}

void CloudServerChoice::resetKvData()
{
    GUARDED(m_site, [&] {
        resetData();
        emit signalServersReset();
    });
}

void CloudServerChoice::resetPriLogin(const QString &serverName)
{
    if (m_ownLogin)
        return;
    resetPriData(serverName);
}

void CloudServerChoice::connectBroker()
{
    disconnectBroker();
    staticPriLoginObj *broker = staticPriLoginObj::GetInstance();
    m_broker << connect(broker, &staticPriLoginObj::priForceExit, this, &CloudServerChoice::resetPriData)
             << connect(broker, &staticPriLoginObj::kvyForceExit, this, &CloudServerChoice::resetKvData)
             << connect(broker, &staticPriLoginObj::priLogin, this, &CloudServerChoice::resetPriLogin);
    auto *owner = qobject_cast<QWidget *>(m_site.owner());
    m_window = owner ? owner->window() : nullptr;
    if (m_window)
        m_window->installEventFilter(this);
}

void CloudServerChoice::disconnectBroker()
{
    for (const QMetaObject::Connection &c : qAsConst(m_broker))
        disconnect(c);
    m_broker.clear();
    if (m_window)
        m_window->removeEventFilter(this);
}

bool CloudServerChoice::eventFilter(QObject *watched, QEvent *event)
{
    // The dialog stops following logins elsewhere once it closes.
    if (event->type() == QEvent::Close && watched == m_window)
        disconnectBroker();
    return QObject::eventFilter(watched, event);
}

void CloudServerChoice::saveChoice(const LtdInfo *entry) const
{
    auto settings = HostConfig::openSysSet();
    settings->setValue(kSettingKey, entry->getServerName());
    settings->sync();
}

void CloudServerChoice::showList()
{
    if (m_combo)
        m_combo->setServerList(m_servers, m_current, true);
}
