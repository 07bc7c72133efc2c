#include "cloudhttpserver.h"
#include "compactjson.h"

#include <hostapi/jsonnesting.h>

#include <civetweb.h>

#include <QByteArray>
#include <QElapsedTimer>
#include <QJsonDocument>

#include <chrono>
#include <cstdio>
#include <exception>
#include <string>

namespace {

const char SessionHeader[] = "X-Velora-Session";

QJsonObject failure(int code, const QString &msg)
{
    return QJsonObject{{QStringLiteral("code"), code}, {QStringLiteral("msg"), msg}};
}

bool clientKeepsAlive(mg_connection *conn)
{
    const char *header = mg_get_header(conn, "Connection");
    if (header) {
        const QByteArray value = QByteArray(header).toLower();
        if (value.contains("close"))
            return false;
        if (value.contains("keep-alive"))
            return true;
    }
    return qstrcmp(mg_get_request_info(conn)->http_version, "1.1") == 0;
}

// Headers and body in one write, composed here rather than through
// civetweb's header calls: those refuse to start once an interim
// "100 Continue" has gone out. Anything but a success closes the connection,
// since its body may not have been read. The body is written behind room
// for the headers, which then go just in front of it, in one buffer that
// each worker thread reuses; one that a large reply grew is let go.
void sendJson(mg_connection *conn, int status, const QJsonObject &object, const char *extraHeader = nullptr)
{
    constexpr size_t KeptCapacity = 64 * 1024;
    constexpr size_t HeaderRoom = 512;
    thread_local std::string buffer;
    const bool keepAlive = status == 200 && clientKeepsAlive(conn);
    if (!keepAlive)
        mg_disable_connection_keep_alive(conn);
    buffer.assign(HeaderRoom, ' ');
    CompactJson::append(object, buffer);
    const size_t bodySize = buffer.size() - HeaderRoom;
    std::string headers = "HTTP/1.1 " + std::to_string(status) + ' ' + mg_get_response_code_text(conn, status)
                          + "\r\nContent-Type: application/json; charset=utf-8\r\nContent-Length: "
                          + std::to_string(bodySize) + "\r\nCache-Control: no-store\r\nConnection: "
                          + (keepAlive ? "keep-alive" : "close") + "\r\n";
    if (extraHeader)
        headers.append(extraHeader).append("\r\n");
    headers.append("\r\n");
    if (headers.size() > HeaderRoom)
        buffer.insert(0, headers.size() - HeaderRoom, ' ');
    const size_t start = buffer.size() - bodySize - headers.size();
    buffer.replace(start, headers.size(), headers);
    // A HEAD answer states the body's length but leaves it out.
    const bool head = qstrcmp(mg_get_request_info(conn)->request_method, "HEAD") == 0;
    mg_write(conn, buffer.data() + start, headers.size() + (head ? 0 : bodySize));
    if (buffer.capacity() > KeptCapacity)
        std::string().swap(buffer);
}

enum class BodyRead { Ok, TooLarge, Broken };

// Reads the whole request body, declared or chunked, refusing anything over
// `limit` before buffering it.
BodyRead readBody(mg_connection *conn, qint64 limit, int timeoutMs, QByteArray *body)
{
    const qint64 declared = mg_get_request_info(conn)->content_length;
    if (declared > limit)
        return BodyRead::TooLarge;
    QElapsedTimer clock;
    clock.start();
    const qint64 deadline = timeoutMs + qMax<qint64>(0, declared) / 256;
    // Qt sends the headers and the body in two writes; its Nagle algorithm
    // then holds the body until the headers are acknowledged, which a
    // delayed ACK stretches to 40 ms. Answering "Expect: 100-continue" at
    // once carries that acknowledgement (civetweb does so only for its own
    // handlers).
    const char *expect = mg_get_header(conn, "Expect");
    if (expect && qstricmp(expect, "100-continue") == 0)
        mg_write(conn, "HTTP/1.1 100 Continue\r\n\r\n", 25);
    body->reserve(int(declared > 0 ? declared : 4096));
    char buffer[16384];
    for (;;) {
        const int n = mg_read(conn, buffer, sizeof buffer);
        if (n < 0)
            return BodyRead::Broken;
        if (n == 0)
            break;
        if (body->size() + n > limit)
            return BodyRead::TooLarge;
        body->append(buffer, n);
        // Each read has civetweb's time-out; a trickle of small reads does not.
        if (clock.elapsed() > deadline)
            return BodyRead::Broken;
    }
    if (declared >= 0 && body->size() != declared)
        return BodyRead::Broken;
    return BodyRead::Ok;
}

bool isMethod(mg_connection *conn, const char *method)
{
    return qstrcmp(mg_get_request_info(conn)->request_method, method) == 0;
}

bool isPath(mg_connection *conn, const char *path)
{
    const char *uri = mg_get_request_info(conn)->local_uri;
    return uri && qstrcmp(uri, path) == 0;
}

int refuseMethod(mg_connection *conn, const char *allow)
{
    sendJson(conn, 405, failure(CloudHttpServer::MethodNotAllowedCode, QStringLiteral("请求方式不受支持")), allow);
    return 405;
}

} // namespace

CloudHttpServer::CloudHttpServer(Handler handler)
    : CloudHttpServer(std::move(handler), Limits())
{
}

CloudHttpServer::CloudHttpServer(Handler handler, const Limits &limits)
    : CloudHttpServer(ClientHandler([handler = std::move(handler)](const QJsonObject &request, const QString &session,
                                                                   const QString &) { return handler(request, session); }),
                      limits)
{
}

CloudHttpServer::CloudHttpServer(ClientHandler handler, const Limits &limits)
    : m_handler(std::move(handler))
    , m_limits(limits)
    , m_handlerSlots(qMax(1, limits.threads))
{
}

CloudHttpServer::~CloudHttpServer()
{
    stop();
}

bool CloudHttpServer::start(const QString &listen, QString *error)
{
    if (m_context) {
        if (error)
            *error = QStringLiteral("already running");
        return false;
    }
    const QByteArray ports = listen.toUtf8();
    const int connectionThreads =
        m_limits.connectionThreads > 0 ? m_limits.connectionThreads : qMax(64, 4 * qMax(1, m_limits.threads));
    const QByteArray threads = QByteArray::number(connectionThreads);
    const QByteArray timeout = QByteArray::number(m_limits.headerTimeoutMs);
    // civetweb reads a connection's headers on its worker thread, bounded by
    // request_timeout_ms in all. Keep-alive lets a client reuse its
    // connection, but civetweb holds a worker thread on an idle one until the
    // keep-alive time-out, so that is kept short. TCP_NODELAY keeps small
    // replies from waiting on the peer's delayed ACK.
    const char *options[] = {"listening_ports", ports.constData(),
                             "num_threads", threads.constData(),
                             "request_timeout_ms", timeout.constData(),
                             "enable_keep_alive", "yes",
                             "keep_alive_timeout_ms", "1000",
                             "tcp_nodelay", "1",
                             "decode_url", "yes",
                             nullptr};
    mg_callbacks callbacks{};
    callbacks.log_message = &CloudHttpServer::onLog;
    char errorText[256] = {0};
    unsigned errorCode = 0;
    mg_error_data errorData{&errorCode, errorText, sizeof errorText};
    mg_init_data init{&callbacks, this, options};
    mg_context *context = mg_start2(&init, &errorData);
    if (!context) {
        if (error)
            *error = QStringLiteral("cannot listen on %1: %2").arg(listen, QString::fromLocal8Bit(errorText));
        return false;
    }
    mg_server_port bound[4] = {};
    const int count = mg_get_server_ports(context, 4, bound);
    m_port = count > 0 ? bound[0].port : 0;
    const QString host = listen.left(listen.lastIndexOf(QLatin1Char(':')));
    m_baseUrl = QStringLiteral("http://%1:%2").arg(host).arg(m_port);
    m_requests.store(0);
    mg_set_request_handler(context, "/cloud", &CloudHttpServer::onCloud, this);
    mg_set_request_handler(context, "/health", &CloudHttpServer::onHealth, this);
    mg_set_request_handler(context, "/", &CloudHttpServer::onOther, this);
    m_context.store(context);
    return true;
}

void CloudHttpServer::stop()
{
    if (!m_context)
        return;
    {
        // civetweb drops replies still being written when it stops, so the
        // requests in progress are waited for first.
        std::unique_lock<std::mutex> lock(m_drainMutex);
        m_stopping = true;
        m_drained.wait_for(lock, std::chrono::milliseconds(m_limits.requestTimeoutMs), [this] { return m_inFlight == 0; });
    }
    mg_stop(m_context.exchange(nullptr));
    std::lock_guard<std::mutex> lock(m_drainMutex);
    m_stopping = false;
}

bool CloudHttpServer::isStopping()
{
    std::lock_guard<std::mutex> lock(m_drainMutex);
    return m_stopping;
}

bool CloudHttpServer::enter()
{
    std::lock_guard<std::mutex> lock(m_drainMutex);
    if (m_stopping)
        return false;
    ++m_inFlight;
    return true;
}

void CloudHttpServer::leave()
{
    std::lock_guard<std::mutex> lock(m_drainMutex);
    if (--m_inFlight == 0)
        m_drained.notify_all();
}

int CloudHttpServer::onCloud(mg_connection *conn, void *self)
{
    auto *server = static_cast<CloudHttpServer *>(self);
    if (!server->enter()) {
        sendJson(conn, 503, failure(StoppingCode, QStringLiteral("服务正在停止，请稍后重试")));
        return 503;
    }
    const int status = server->serveCloud(conn);
    server->leave();
    return status;
}

int CloudHttpServer::onHealth(mg_connection *conn, void *self)
{
    if (!isPath(conn, "/health"))
        return onOther(conn, self);
    if (!isMethod(conn, "GET") && !isMethod(conn, "HEAD"))
        return refuseMethod(conn, "Allow: GET, HEAD");
    sendJson(conn, 200, QJsonObject{{QStringLiteral("status"), QStringLiteral("ok")}});
    return 200;
}

int CloudHttpServer::onOther(mg_connection *conn, void *)
{
    sendJson(conn, 404, failure(NotFoundCode, QStringLiteral("请求的地址不存在")));
    return 404;
}

int CloudHttpServer::onLog(const mg_connection *, const char *message)
{
    std::fprintf(stderr, "velora-cloud: %s\n", message);
    return 1;
}

int CloudHttpServer::serveCloud(mg_connection *conn)
{
    if (!isPath(conn, "/cloud"))
        return onOther(conn, this);
    if (!isMethod(conn, "POST"))
        return refuseMethod(conn, "Allow: POST");
    m_requests.fetch_add(1);
    QByteArray body;
    switch (readBody(conn, m_limits.maxBodyBytes, m_limits.bodyTimeoutMs, &body)) {
    case BodyRead::Broken:
        // A malformed chunk or a short body; if the client is gone the
        // answer is simply lost.
        sendJson(conn, 400, failure(MalformedCode, QStringLiteral("请求内容不完整或格式错误")));
        return 400;
    case BodyRead::TooLarge:
        sendJson(conn, 413, failure(TooLargeCode, QStringLiteral("请求内容超过%1字节的上限").arg(m_limits.maxBodyBytes)));
        return 413;
    case BodyRead::Ok:
        break;
    }
    const char *session = mg_get_header(conn, SessionHeader);
    try {
        const QString client = QString::fromLatin1(mg_get_request_info(conn)->remote_addr);
        sendJson(conn, 200, answer(body, QString::fromUtf8(session ? session : ""), client));
        return 200;
    } catch (const std::exception &e) {
        std::fprintf(stderr, "velora-cloud: request failed: %s\n", e.what());
    } catch (...) {
        std::fprintf(stderr, "velora-cloud: request failed with an unknown exception\n");
    }
    sendJson(conn, 500, failure(InternalCode, QStringLiteral("服务内部错误")));
    return 500;
}

QJsonObject CloudHttpServer::answer(const QByteArray &body, const QString &session, const QString &client)
{
    m_handlerSlots.acquire();
    const QSemaphoreReleaser release(m_handlerSlots);
    switch (JsonNesting::scan(body)) {
    case JsonNesting::Verdict::TooDeep:
        return failure(BadRequestCode, QStringLiteral("请求内容嵌套超过%1层的上限").arg(JsonNesting::MaxDepth));
    case JsonNesting::Verdict::DuplicateKey:
        return failure(BadRequestCode, QStringLiteral("请求内容的同一对象中有重复的键"));
    case JsonNesting::Verdict::Fine:
        break;
    }
    QJsonParseError parseError{};
    const QJsonDocument doc = QJsonDocument::fromJson(body, &parseError);
    if (parseError.error != QJsonParseError::NoError || !doc.isObject())
        return failure(BadRequestCode, QStringLiteral("请求内容不是有效的JSON对象"));
    return m_handler(doc.object(), session, client);
}
