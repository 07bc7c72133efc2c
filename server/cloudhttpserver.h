#pragma once
#include <QJsonObject>
#include <QString>

#include <atomic>
#include <QSemaphore>

#include <condition_variable>
#include <functional>
#include <mutex>

struct mg_connection;
struct mg_context;

// The cloud service over HTTP, served by civetweb worker threads.
//   POST /cloud   body: the request envelope (JSON object); header
//                 "X-Velora-Session": the session. Answers 200 with the
//                 service's reply. A body that is not a JSON object is answered
//                 200 with {"code": 1, "msg": "请求内容不是有效的JSON对象"}, the same
//                 bad-request reply the service gives for malformed fields.
//                 So is a body nested deeper than JsonNesting::MaxDepth, with
//                 {"code": 1, "msg": "请求内容嵌套超过128层的上限"}, refused
//                 before it is parsed: the parser recurses on a worker's
//                 stack. An object that repeats a key gets {"code": 1, "msg":
//                 "请求内容的同一对象中有重复的键"}, also before parsing (Qt's
//                 parser leaks on it). Bodies over the limit get 413, a
//                 malformed chunked or short body 400, other methods 405, all
//                 with a JSON body {"code", "msg"}; clients treat them as no
//                 reply.
//                 "Expect: 100-continue" is answered before the body is read.
//   GET /health   200 {"status": "ok"}.
// The handler is called from several worker threads at once. Their stack is
// civetweb's, fixed when it was built (100 KiB in Debian's package; 1.15 has
// no run-time option for it), so nothing on them recurses with the input:
// request nesting is capped as above, and handlers must bound their replies'
// nesting within JsonNesting::MaxDepth too.
class CloudHttpServer
{
public:
    using Handler = std::function<QJsonObject(const QJsonObject &request, const QString &session)>;
    // Also given the client's address (for throttling failed logins).
    using ClientHandler =
        std::function<QJsonObject(const QJsonObject &request, const QString &session, const QString &client)>;

    // Connections are read and written by many more threads than may run
    // the handler at once, and a client gets a few seconds for its headers
    // and a bounded time for its body: clients that stall or trickle hold a
    // connection thread for that long at most, never a handler slot, so
    // /health and real requests are served meanwhile.
    struct Limits {
        int threads = 32;                      // handler calls at once
        int connectionThreads = 0;             // 0: four per handler slot, at least 64
        qint64 maxBodyBytes = 8 * 1024 * 1024; // larger bodies get 413
        int headerTimeoutMs = 5000;            // headers, and each read or write
        int bodyTimeoutMs = 15000;             // the whole body, plus 1 s per 256 KiB declared
        int requestTimeoutMs = 30000;          // stop() waits this long for handlers
    };

    static constexpr int BadRequestCode = 1;
    static constexpr int MalformedCode = 400;
    static constexpr int TooLargeCode = 413;
    static constexpr int MethodNotAllowedCode = 405;
    static constexpr int NotFoundCode = 404;
    static constexpr int InternalCode = 500;
    static constexpr int StoppingCode = 503;

    explicit CloudHttpServer(Handler handler);
    CloudHttpServer(Handler handler, const Limits &limits);
    CloudHttpServer(ClientHandler handler, const Limits &limits);
    ~CloudHttpServer();
    CloudHttpServer(const CloudHttpServer &) = delete;
    CloudHttpServer &operator=(const CloudHttpServer &) = delete;

    // Starts serving on "ADDR:PORT" (port 0: any free port). False with a
    // reason in `error` when the address cannot be bound.
    bool start(const QString &listen, QString *error = nullptr);
    // Refuses new requests (503), lets the ones in progress finish (up to the
    // request time-out), then closes every connection.
    void stop();

    bool isRunning() const { return m_context != nullptr; }
    // True while stop() waits for the requests in progress.
    bool isStopping();
    int port() const { return m_port; }
    // "http://ADDR:PORT" of the listening socket.
    QString baseUrl() const { return m_baseUrl; }
    // Requests answered on /cloud since start (all outcomes).
    qint64 requestCount() const { return m_requests.load(); }

private:
    static int onCloud(mg_connection *conn, void *self);
    static int onHealth(mg_connection *conn, void *self);
    static int onOther(mg_connection *conn, void *self);
    static int onLog(const mg_connection *conn, const char *message);

    bool enter();
    void leave();
    int serveCloud(mg_connection *conn);
    QJsonObject answer(const QByteArray &body, const QString &session, const QString &client);

    ClientHandler m_handler;
    Limits m_limits;
    mg_context *m_context = nullptr;
    int m_port = 0;
    QString m_baseUrl;
    std::atomic<qint64> m_requests{0};
    QSemaphore m_handlerSlots;
    std::mutex m_drainMutex;
    std::condition_variable m_drained;
    int m_inFlight = 0;
    bool m_stopping = false;
};
