#include "httpcloudchannel.h"
#include "jsonnesting.h"

#include <QJsonDocument>
#include <QMutex>
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
    // parser's recursion overflow the stack of the thread that waits, and a
    // repeated key would make it leak.
    const QByteArray body = reply->readAll();
    return JsonNesting::within(body) ? body : QByteArray();
}

const char kAbortedFor[] = "veloraAbortedFor";

QString failureReason(QNetworkReply *reply)
{
    if (reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid())
        return QString();
    const QString abortedFor = reply->property(kAbortedFor).toString();
    if (reply->error() == QNetworkReply::OperationCanceledError)
        return abortedFor;
    switch (reply->error()) {
    case QNetworkReply::ConnectionRefusedError:
        return QStringLiteral("连接被拒绝");
    case QNetworkReply::HostNotFoundError:
        return QStringLiteral("找不到服务器");
    case QNetworkReply::RemoteHostClosedError:
        return QStringLiteral("连接被服务器关闭");
    default:
        return reply->errorString();
    }
}

void abortFor(QNetworkReply *reply, const QString &reason)
{
    reply->setProperty(kAbortedFor, reason);
    reply->abort();
}

} // namespace

class HttpCloudChannel::Reachability
{
public:
    QString reason() const
    {
        QMutexLocker lock(&m_mutex);
        return m_reason;
    }
    // A cancelled call (no reason, no HTTP status) tells nothing.
    void note(QNetworkReply *reply)
    {
        const bool answered = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
        const QString reason = failureReason(reply);
        if (!answered && reason.isEmpty())
            return;
        QMutexLocker lock(&m_mutex);
        m_reason = reason;
    }

private:
    mutable QMutex m_mutex;
    QString m_reason;
};

HttpCloudChannel::HttpCloudChannel(const QUrl &baseUrl, int timeoutMs, int connectTimeoutMs)
    : m_endpoint(endpointFor(baseUrl))
    , m_timeoutMs(timeoutMs)
    , m_connectTimeoutMs(connectTimeoutMs)
    , m_reachability(std::make_shared<Reachability>())
{
}

QString HttpCloudChannel::unreachableReason() const
{
    return m_reachability->reason();
}

// Qt has no connect time-out: the first body bytes written (or any sign of
// a reply) prove the connection.
void HttpCloudChannel::watchConnect(QNetworkReply *reply, CloudCall *call) const
{
    auto *timer = new QTimer(call);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, reply, [reply] { abortFor(reply, QStringLiteral("连接超时")); });
    QObject::connect(reply, &QNetworkReply::uploadProgress, timer, [timer](qint64 sent) {
        if (sent > 0)
            timer->stop();
    });
    QObject::connect(reply, &QNetworkReply::metaDataChanged, timer, &QTimer::stop);
    timer->start(qMax(1, m_connectTimeoutMs));
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
    const std::shared_ptr<Reachability> reachability = m_reachability;
    QObject::connect(reply, &QNetworkReply::finished, reply, [guard, reply, reachability] {
        reply->deleteLater();
        reachability->note(reply);
        if (guard)
            guard->finish(replyBody(reply));
    });
    auto *timer = new QTimer(call);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer); // a coarse timer may fire 5% early
    QObject::connect(timer, &QTimer::timeout, reply, [reply] { abortFor(reply, QStringLiteral("服务器无响应")); });
    QObject::connect(call, &QObject::destroyed, reply, [reply] { reply->abort(); });
    timer->start(qMax(1, m_timeoutMs.load()));
    watchConnect(reply, call);
    return call;
}
