#pragma once
#include <QByteArray>
#include <QJsonObject>
#include <QObject>

#include <memory>

class CloudCall;
class CloudChannel;
class CloudWaiter;

// The host's cloud service access. AsyncReplyLoop is the blocking call that the
// dialogs use; the instance is the asynchronous service object published as the
// application property "ServicesUtil".
class ServicesUtil : public QObject
{
    Q_OBJECT
public:
    static ServicesUtil *instance();

    // Sends one request and returns the raw reply bytes; blocks the caller while
    // a local event loop keeps windows painting. Empty bytes: no reply (also
    // when no channel is installed). "cmd" "getConfigValue" is answered from the
    // host configuration without a channel.
    static QByteArray AsyncReplyLoop(QJsonObject &request);

    static void setChannel(std::shared_ptr<CloudChannel> channel);
    static std::shared_ptr<CloudChannel> channel();
    // Used by blocking calls made on the application's thread; calls on other
    // threads always wait quietly. Null restores the quiet wait.
    static void setWaiter(std::shared_ptr<CloudWaiter> waiter);

    // Empty while the channel's server answers, else why it does not.
    QString unreachableReason() const;

    // Sets the dynamic property "ServicesUtil" of the application to the
    // address of instance() as a qlonglong.
    static void publish();

    // Asynchronous request: the parsed reply (empty object for no reply) is
    // emitted through doGotMsg on the instance's thread.
    Q_INVOKABLE void metaMsgSync(QJsonObject request);

signals:
    void doGotMsg(const QJsonObject &reply);
    // The channel's server stopped or started answering (reason empty).
    void reachabilityChanged(const QString &reason);
    // A reply said the session behind `token` is not (or no longer) logged in.
    void sessionRejected(const QString &token);
    // Replies wait in the queue drained by drainNotes.
    void notesPending(QPrivateSignal);

private:
    explicit ServicesUtil(QObject *parent = nullptr);
    static QByteArray answerConfigQuery(const QJsonObject &request);
    static void waitFor(CloudCall &call);
    static void noteLater(const std::shared_ptr<CloudChannel> &channel, const QJsonObject &request,
                          const QByteArray &reply);
    void noteUnreachable(const QString &reason);
    void noteReply(const QString &reason, bool answered, bool rejected, const QString &token);
    void drainNotes();

    QString m_unreachable;
};
