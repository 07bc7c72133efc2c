#include "embeddedchannel.h"
#include "cloudservice.h"

#include <QFutureWatcher>
#include <QJsonDocument>
#include <QtConcurrent>

EmbeddedChannel::EmbeddedChannel(const QString &dataDir)
    : m_service(std::make_shared<CloudService>(dataDir))
{
}

EmbeddedChannel::EmbeddedChannel(std::shared_ptr<CloudService> service)
    : m_service(std::move(service))
{
}

EmbeddedChannel::~EmbeddedChannel() = default;

CloudCall *EmbeddedChannel::start(const QJsonObject &request, const QString &session)
{
    auto *call = new CloudCall;
    // The watcher is the call's child: if the caller drops the call before the
    // reply is ready, the late result is dropped with it.
    auto *watcher = new QFutureWatcher<QByteArray>(call);
    QObject::connect(watcher, &QFutureWatcher<QByteArray>::finished, call, [call, watcher] {
        call->finish(watcher->result());
    });
    // The task keeps the service alive even if the channel is replaced meanwhile.
    std::shared_ptr<CloudService> service = m_service;
    watcher->setFuture(QtConcurrent::run([service, request, session]() -> QByteArray {
        return QJsonDocument(service->handle(request, session)).toJson(QJsonDocument::Compact);
    }));
    return call;
}

QString EmbeddedChannel::name() const
{
    return QStringLiteral("embedded");
}
