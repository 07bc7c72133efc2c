#include "hosttestcase.h"
#include "loginanswers.h"

#include <elidedlabel.h>
#include <hostcloudwaiter.h>
#include <mainwindow.h>
#include <projectdocument.h>

#include <hostapi/httpcloudchannel.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/users.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressDialog>
#include <QPushButton>
#include <QStatusBar>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

namespace {
QJsonObject serverListRequest()
{
    return {{"cmd", "cloudSoft"}, {"orgin_token", "kv_token"}, {"data", QJsonObject{{"method", "getserverlist"}}}};
}

// Accepts connections and, when told to, answers every request with an
// empty server list; otherwise it never says a word.
class TinyServer : public QTcpServer
{
public:
    bool answers = false;
    QList<QTcpSocket *> clients;

protected:
    void incomingConnection(qintptr handle) override
    {
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(handle);
        clients << socket;
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            if (!answers || !socket->readAll().contains("getserverlist"))
                return;
            const QByteArray body = R"({"code":0,"msg":"","data":[]})";
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: "
                          + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        });
    }
};
}

class TestCloudWait : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<ProjectDocument> project;

    QString channelLabel(MainWindow &window) const
    {
        return window.findChild<ElidedLabel *>("lblChannel")->fullText();
    }

private slots:
    void init()
    {
        HostTestCase::init();
        project = std::make_unique<ProjectDocument>();
        QVERIFY(project->loadFile(ProjectDocument::samplePath(), nullptr));
    }
    void cleanup()
    {
        project.reset();
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void silentServerShowsTheWaitAndCanBeCancelled()
    {
        TinyServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        const QString url = QStringLiteral("http://127.0.0.1:%1").arg(silent.serverPort());
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(url));
        MainWindow window(project.get());
        window.setChannelText(QStringLiteral("云服务器 ") + url);
        QString shown, status;
        int cursor = -1;
        qint64 shownAfter = -1;
        QElapsedTimer clock;
        // Watches for the panel rather than guessing when it shows: a slow
        // (sanitized) build may take longer to get there.
        QTimer watch;
        watch.setInterval(20);
        connect(&watch, &QTimer::timeout, &window, [&] {
            auto *panel = window.findChild<QProgressDialog *>("cloudWaitPanel");
            if (!panel || !panel->isVisible())
                return;
            watch.stop();
            shownAfter = clock.elapsed();
            shown = panel->labelText();
            status = window.statusBar()->currentMessage();
            cursor = QApplication::overrideCursor() ? QApplication::overrideCursor()->shape() : -1;
            panel->findChild<QPushButton *>()->click();
        });
        watch.start();
        clock.start();
        QJsonObject request = serverListRequest();
        QVERIFY(ServicesUtil::AsyncReplyLoop(request).isEmpty());
        QVERIFY(clock.elapsed() < HttpCloudChannel::DefaultTimeoutMs);
        QVERIFY2(shownAfter >= HostCloudWaiter::QuietMs, qPrintable(QString::number(shownAfter)));
        const QString text = QStringLiteral("正在等待云服务器 %1的回复…").arg(url);
        QCOMPARE(shown, text);
        QCOMPARE(status, text);
        QCOMPARE(cursor, int(Qt::BusyCursor));
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(window.statusBar()->currentMessage(), QString());
        // Giving up is not a verdict on the server.
        QCoreApplication::processEvents();
        QCOMPARE(ServicesUtil::instance()->unreachableReason(), QString());
        QCOMPARE(channelLabel(window), QStringLiteral("云服务器 ") + url);
    }

    void downServerIsNamedUntilItAnswersAgain()
    {
        TinyServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const quint16 port = server.serverPort();
        server.close();
        const QString url = QStringLiteral("http://127.0.0.1:%1").arg(port);
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(url));
        MainWindow window(project.get());
        window.setChannelText(QStringLiteral("云服务器"));
        QJsonObject request = serverListRequest();
        QVERIFY(ServicesUtil::AsyncReplyLoop(request).isEmpty());
        QTRY_COMPARE(channelLabel(window), QStringLiteral("云服务器：无法连接（连接被拒绝）"));
        // A cloud function says so instead of opening on an empty server list.
        QCOMPARE(window.openEntry(QStringLiteral("pricecheck")), nullptr);
        QCOMPARE(fx->messageTexts(), QStringList{QStringLiteral("无法连接云服务器（连接被拒绝），请检查网络或稍后再试。")});
        QVERIFY(fx->modalRuns().isEmpty());
        // The guide's local lines need no cloud.
        QWidget *guide = window.openEntry(QStringLiteral("featureguide"));
        QVERIFY(guide);
        delete guide;
        QCOMPARE(fx->messageTexts().size(), 1);

        server.answers = true;
        QVERIFY(server.listen(QHostAddress::LocalHost, port));
        QVERIFY(ServerRegistry::instance()->refresh());
        QTRY_COMPARE(channelLabel(window), QStringLiteral("云服务器"));
    }

    void sessionTheServerForgotShowsLoggedOut_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("a call is refused") << "refused";
        QTest::newRow("the server list shows it") << "list";
    }
    void sessionTheServerForgotShowsLoggedOut()
    {
        QFETCH(QString, how);
        Users::Instance()->Kvy()->setLogin("u1", "demo", "s1");
        MainWindow window(project.get());
        QSignalSpy forced(staticPriLoginObj::GetInstance(), &staticPriLoginObj::kvyForceExit);
        if (how == "refused") {
            fx->channel().replyError(2, QStringLiteral("登录已失效，请重新登录"));
            QJsonObject request = serverListRequest();
            ServicesUtil::AsyncReplyLoop(request);
        } else {
            fx->channel().replyOk(loginanswers::serverList(false));
            QVERIFY(ServerRegistry::instance()->refresh());
        }
        QTRY_COMPARE(forced.count(), 1);
        QVERIFY(!Users::Instance()->Kvy()->IsLogin());
        QCOMPARE(window.loginStateText(), QStringLiteral("Korvane云：未登录"));
    }
};

QTEST_MAIN(TestCloudWait)
#include "tst_cloudwait.moc"
