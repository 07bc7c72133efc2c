#include "httpcloudchannel.h"
#include "jsonnesting.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QThreadStorage>
#include <QTimer>

const char HttpCloudChannel::SessionHeader[] = "X-Velora-Session";

namespace {

// One manager per thread: a manager and its replies belong to the thread that
// made them, and each thread keeps its own keep-alive connections. The storage
// deletes the manager when the thread ends.
QNetworkAccessManager *threadManager()
{
    static QThreadStorage<QNetworkAccessManager *> managers;
    if (!managers.hasLocalData())
        managers.setLocalData(new QNetworkAccessManager);
    return managers.localData();
}

QByteArray replyBody(QNetworkReply *reply)
{
    if (reply->error() != QNetworkReply::NoError)
        return {};
    if (reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() != 200)
        return {};
    // Every caller parses the bytes; nesting no reply has would make the
    // parser's recursion overflow the stack of the thread that waits.
    const QByteArray body = reply->readAll();
    return JsonNesting::within(body) ? body : QByteArray();
}

} // namespace

HttpCloudChannel::HttpCloudChannel(const QUrl &baseUrl, int timeoutMs)
    : m_endpoint(endpointFor(baseUrl))
    , m_timeoutMs(timeoutMs)
{
}

QUrl HttpCloudChannel::endpointFor(const QUrl &baseUrl)
{
    QUrl url = baseUrl;
    QString path = url.path();
    while (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    url.setPath(path + QStringLiteral("/cloud"));
    return url;
}

CloudCall *HttpCloudChannel::start(const QJsonObject &request, const QString &session)
{
    auto *call = new CloudCall;
    QNetworkRequest http(m_endpoint);
    http.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json; charset=utf-8"));
    http.setRawHeader(SessionHeader, session.toUtf8());
    // Qt writes headers and body separately and its socket keeps Nagle on, so
    // the body waits for the server's ACK of the headers. velora-cloud
    // answers this expectation at once, which brings that ACK without the
    // 40 ms delayed-ACK wait; Qt skips the interim reply.
    http.setRawHeader(QByteArrayLiteral("Expect"), QByteArrayLiteral("100-continue"));
    QNetworkReply *reply = threadManager()->post(http, QJsonDocument(request).toJson(QJsonDocument::Compact));

    // Everything below is tied to the reply, never to the call: the caller may
    // delete the call (its loop gone) before the reply arrives, and abort()
    // finishes the reply synchronously.
    QPointer<CloudCall> guard(call);
    QObject::connect(reply, &QNetworkReply::finished, reply, [guard, reply] {
        reply->deleteLater();
        if (guard)
            guard->finish(replyBody(reply));
    });
    auto *timer = new QTimer(call);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer); // a coarse timer may fire 5% early
    QObject::connect(timer, &QTimer::timeout, reply, [reply] { reply->abort(); });
    QObject::connect(call, &QObject::destroyed, reply, [reply] { reply->abort(); });
    timer->start(qMax(1, m_timeoutMs.load()));
    return call;
}
