#pragma once
#include <QByteArray>
#include <QJsonObject>
#include <QObject>

#include <memory>

class CloudChannel;

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

    // Sets the dynamic property "ServicesUtil" of the application to the
    // address of instance() as a qlonglong.
    static void publish();

    // Asynchronous request: the parsed reply (empty object for no reply) is
    // emitted through doGotMsg on the instance's thread.
    Q_INVOKABLE void metaMsgSync(QJsonObject request);

signals:
    void doGotMsg(const QJsonObject &reply);

private:
    explicit ServicesUtil(QObject *parent = nullptr);
    static QByteArray answerConfigQuery(const QJsonObject &request);
};
