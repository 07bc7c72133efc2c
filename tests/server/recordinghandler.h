#pragma once
#include <server/cloudhttpserver.h>

#include <QJsonObject>
#include <QSemaphore>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>
#include <stdexcept>

// Stands in for the cloud service behind the HTTP server: records what
// arrives, answers {"code":0,"msg":"好","data":<the request's data>}, can be
// slowed down, throws for the method "throw", and notes the most requests it
// served at once.
class RecordingHandler
{
public:
    std::atomic<int> delayMs{0};
    std::atomic<int> mostInside{0};
    QSemaphore entered;

    QJsonObject operator()(const QJsonObject &request, const QString &session)
    {
        const int now = ++m_inside;
        int seen = mostInside.load();
        while (now > seen && !mostInside.compare_exchange_weak(seen, now)) {
        }
        entered.release();
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_requests << request;
            m_sessions << session;
        }
        QThread::msleep(ulong(delayMs.load()));
        --m_inside;
        const QJsonObject data = request.value("data").toObject();
        if (data.value("method").toString() == QLatin1String("throw"))
            throw std::runtime_error("handler failed");
        return QJsonObject{{"code", 0}, {"msg", "好"}, {"data", data}};
    }

    // A server on a free loopback port that calls this handler.
    std::unique_ptr<CloudHttpServer> serve(int threads, qint64 maxBody)
    {
        CloudHttpServer::Limits limits;
        limits.threads = threads;
        limits.maxBodyBytes = maxBody;
        auto server = std::make_unique<CloudHttpServer>([this](const QJsonObject &r, const QString &s) { return (*this)(r, s); },
                                                        limits);
        QString error;
        if (!server->start("127.0.0.1:0", &error))
            qWarning("%s", qPrintable(error));
        return server;
    }

    QList<QJsonObject> requests() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_requests;
    }
    QStringList sessions() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_sessions;
    }
    int handled() const { return requests().size(); }

    void reset()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_requests.clear();
        m_sessions.clear();
        delayMs = 0;
        mostInside = 0;
        entered.acquire(entered.available());
    }

private:
    mutable std::mutex m_mutex;
    QList<QJsonObject> m_requests;
    QStringList m_sessions;
    std::atomic<int> m_inside{0};
};
