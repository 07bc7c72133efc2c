#include "cloudservice.h"
#include "servicecore.h"

CloudService::CloudService(const QString &dataDir, Seed seed, const QString &database)
    : m_core(std::make_unique<ServiceCore>(dataDir, seed, database))
{
}

CloudService::~CloudService() = default;

QJsonObject CloudService::handle(const QJsonObject &request, const QString &session)
{
    return m_core->handle(request, session, QString());
}

QJsonObject CloudService::handle(const QJsonObject &request, const QString &session, const QString &client)
{
    return m_core->handle(request, session, client);
}

QString CloudService::openError() const
{
    return m_core->openError();
}

QString CloudService::firstRunNotice() const
{
    return m_core->firstRunNotice();
}
