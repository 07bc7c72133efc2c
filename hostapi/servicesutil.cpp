#include "servicesutil.h"
#include "jsonnesting.h"
#include "cloudchannel.h"
#include "cloudwaiter.h"
#include "hostconfig.h"
#include "users.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QPointer>
#include <QThread>

#include <mutex>
#include <vector>

namespace {
// std::mutex so that the thread sanitizer sees the lock (see CloudWorkerRequest).
std::mutex s_channelMutex;
std::shared_ptr<CloudChannel> s_channel;
std::shared_ptr<CloudWaiter> s_waiter;
// The service's "no or expired session" code.
constexpr int kNotLoggedIn = 2;

// What a finished call tells, read on the calling thread: the channel's
// verdict when the call ends (a note must not keep the channel alive past the
// application) and whether the server forgot the session.
struct Note {
    QString reason;
    bool answered = false;
    bool rejected = false;
    QString token;
};
// Replies on their way to the instance's thread. They travel under this lock
// rather than inside Qt's posted event, whose lock the thread sanitizer
// cannot see; the event itself carries nothing.
std::mutex s_notesMutex;
std::vector<Note> s_notes;
}

ServicesUtil::ServicesUtil(QObject *parent)
    : QObject(parent)
{
    connect(this, &ServicesUtil::notesPending, this, &ServicesUtil::drainNotes, Qt::QueuedConnection);
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
    {
        std::lock_guard<std::mutex> lock(s_channelMutex);
        s_channel = std::move(channel);
    }
    // Nothing is known yet of a new channel's server.
    ServicesUtil *self = instance();
    QMetaObject::invokeMethod(self, [self] { self->noteUnreachable(QString()); }, Qt::QueuedConnection);
}

void ServicesUtil::noteUnreachable(const QString &reason)
{
    if (reason == m_unreachable)
        return;
    m_unreachable = reason;
    emit reachabilityChanged(reason);
}

std::shared_ptr<CloudChannel> ServicesUtil::channel()
{
    std::lock_guard<std::mutex> lock(s_channelMutex);
    return s_channel;
}

void ServicesUtil::setWaiter(std::shared_ptr<CloudWaiter> waiter)
{
    std::lock_guard<std::mutex> lock(s_channelMutex);
    s_waiter = std::move(waiter);
}

QString ServicesUtil::unreachableReason() const
{
    return m_unreachable;
}

void ServicesUtil::waitFor(CloudCall &call)
{
    std::shared_ptr<CloudWaiter> waiter;
    if (QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread()) {
        std::lock_guard<std::mutex> lock(s_channelMutex);
        waiter = s_waiter;
    }
    if (waiter)
        waiter->wait(call);
    else
        CloudWaiter::waitQuietly(call);
}

// Queued even on the instance's own thread: a forced logout must not run
// inside the caller's handling of this reply.
// The reply is read on the caller's thread: a batch's thousands of replies
// must not all be parsed again on the GUI thread.
void ServicesUtil::noteLater(const std::shared_ptr<CloudChannel> &channel, const QJsonObject &request,
                             const QByteArray &reply)
{
    Note note;
    note.answered = !reply.isEmpty();
    note.rejected = note.answered
                    && JsonNesting::parse(reply).object().value(QStringLiteral("code")).toInt() == kNotLoggedIn;
    if (note.rejected)
        note.token = request.value(QStringLiteral("orgin_token")).toString();
    if (!note.answered)
        note.reason = channel->unreachableReason();
    bool first = false;
    {
        std::lock_guard<std::mutex> lock(s_notesMutex);
        first = s_notes.empty();
        s_notes.push_back(std::move(note));
    }
    // A non-empty queue has its drain on the way already.
    if (first)
        emit instance()->notesPending(QPrivateSignal());
}

void ServicesUtil::drainNotes()
{
    std::vector<Note> notes;
    {
        std::lock_guard<std::mutex> lock(s_notesMutex);
        notes.swap(s_notes);
    }
    for (const Note &note : notes)
        noteReply(note.reason, note.answered, note.rejected, note.token);
}

// Runs on the instance's thread: reachability and rejected sessions are
// announced there, whichever thread made the call.
void ServicesUtil::noteReply(const QString &reason, bool answered, bool rejected, const QString &token)
{
    // A cancelled call tells nothing about the server.
    if (answered || !reason.isEmpty())
        noteUnreachable(reason);
    if (rejected)
        emit sessionRejected(token);
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
    waitFor(*call);
    const QByteArray reply = call->reply();
    noteLater(ch, request, reply);
    return reply;
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
    auto deliver = [this, call, ch, request](const QByteArray &bytes) {
        noteLater(ch, request, bytes);
        emit doGotMsg(JsonNesting::parse(bytes).object());
        call->deleteLater();
    };
    if (call->isFinished())
        deliver(call->reply());
    else
        connect(call, &CloudCall::finished, this, deliver);
}
