#include "cloudserverowner.h"
#include "cloudserverchoice.h"

CloudServerChoice *CloudServerOwner::createServerChoice(CloudServerCombox *combo, const GuardSite &site)
{
    m_choice = new CloudServerChoice(combo, site);
    return m_choice;
}

CloudServerChoice *CloudServerOwner::startServerChoice(CloudServerCombox *combo, const GuardSite &site)
{
    createServerChoice(combo, site)->start();
    return m_choice;
}

LtdInfo *CloudServerOwner::getCurrServer() const
{
    return m_choice ? m_choice->getCurrServer() : nullptr;
}

bool CloudServerOwner::getOwnerLogin() const
{
    return m_choice && m_choice->getOwnerLogin();
}

int CloudServerOwner::readSetting()
{
    return m_choice ? m_choice->readSetting() : -1;
}

void CloudServerOwner::requestServerList()
{
    if (m_choice)
        m_choice->requestServerList();
}

void CloudServerOwner::resetData()
{
    if (m_choice)
        m_choice->resetData();
}

void CloudServerOwner::slotSaveCurrServer(int index)
{
    if (m_choice)
        m_choice->slotSaveCurrServer(index);
}

void CloudServerOwner::loginSuccessKv()
{
    if (m_choice)
        m_choice->loginSuccessKv();
}

void CloudServerOwner::loginSuccessPri()
{
    if (m_choice)
        m_choice->loginSuccessPri();
}
