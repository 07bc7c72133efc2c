#include "servicesutil.h"
#include "jsonnesting.h"
#include "cloudchannel.h"
#include "hostconfig.h"
#include "users.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonDocument>
#include <QMutex>
#include <QPointer>

namespace {
QMutex s_channelMutex;
std::shared_ptr<CloudChannel> s_channel;
}

ServicesUtil::ServicesUtil(QObject *parent)
    : QObject(parent)
{
}

ServicesUtil *ServicesUtil::instance()
{
    static ServicesUtil *service = [] {
        auto *s = new ServicesUtil;
        if (auto *app = QCoreApplication::instance()) {
            s->moveToThread(app->thread());
        }
        return s;
    }();
    return service;
}

void ServicesUtil::setChannel(std::shared_ptr<CloudChannel> channel)
{
    QMutexLocker lock(&s_channelMutex);
    s_channel = std::move(channel);
}

std::shared_ptr<CloudChannel> ServicesUtil::channel()
{
    QMutexLocker lock(&s_channelMutex);
    return s_channel;
}

void ServicesUtil::publish()
{
    if (auto *app = QCoreApplication::instance())
        app->setProperty("ServicesUtil", qlonglong(reinterpret_cast<quintptr>(instance())));
}

QByteArray ServicesUtil::answerConfigQuery(const QJsonObject &request)
{
    const QString key = request.value(QStringLiteral("data")).toString();
    QJsonObject reply{{QStringLiteral("code"), 0},
                      {QStringLiteral("msg"), QString()},
                      {QStringLiteral("data"), HostConfig::value(key)}};
    return QJsonDocument(reply).toJson(QJsonDocument::Compact);
}

QByteArray ServicesUtil::AsyncReplyLoop(QJsonObject &request)
{
    if (request.value(QStringLiteral("cmd")).toString() == QLatin1String("getConfigValue"))
        return answerConfigQuery(request);

    const std::shared_ptr<CloudChannel> ch = channel();
    if (!ch)
        return {};
    // The call object lives on this thread; the channel finishes it here.
    std::unique_ptr<CloudCall> call(ch->start(request, Users::Instance()->Kvy()->sessionToken()));
    if (!call)
        return {};
    if (!call->isFinished()) {
        QEventLoop loop;
        QObject::connect(call.get(), &CloudCall::finished, &loop, &QEventLoop::quit);
        if (!call->isFinished())
            loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    return call->reply();
}

void ServicesUtil::metaMsgSync(QJsonObject request)
{
    const std::shared_ptr<CloudChannel> ch = channel();
    if (!ch) {
        emit doGotMsg(QJsonObject());
        return;
    }
    CloudCall *call = ch->start(request, Users::Instance()->Kvy()->sessionToken());
    if (!call) {
        emit doGotMsg(QJsonObject());
        return;
    }
    call->setParent(this);
    auto deliver = [this, call](const QByteArray &bytes) {
        emit doGotMsg(JsonNesting::parse(bytes).object());
        call->deleteLater();
    };
    if (call->isFinished())
        deliver(call->reply());
    else
        connect(call, &CloudCall::finished, this, deliver);
}
