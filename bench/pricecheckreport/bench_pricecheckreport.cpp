// Runs the project unit-price check report over a generated project of N
// bills (default 2000) against the embedded cloud service and measures how
// long the GUI thread's event loop was ever kept from running (a 10 ms timer
// records the largest gap between its ticks, taking in the finished report's
// table and charts) and the total time.
//
//   QT_QPA_PLATFORM=offscreen build-dev/bench/pricecheckreport/bench_pricecheckreport [bills]
#include "../host/benchsetup.h"

#include <mainwindow.h>
#include <pricecheckreporthost.h>
#include <pricecheckreportmodel.h>
#include <pricecheckreportrun.h>
#include <pricecheckreportwindow.h>
#include <projectdocument.h>

#include <hostapi/apppaths.h>
#include <hostapi/hostconstants.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace {
bool login()
{
    QJsonObject request{{"cmd", "cloudSoft"}, {"app_type", 16}, {"orgin_token", KvToken},
                        {"data", QJsonObject{{"method", "login"}, {"username", ServiceSeed::DemoUser},
                                             {"password", ServiceSeed::DemoPassword}}}};
    const QJsonObject data = QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(request)).object().value("data").toObject();
    Users::Instance()->Kvy()->setLogin(data.value("userid").toVariant().toString(), data.value("username").toString(),
                                       data.value("session").toString());
    return Users::Instance()->Kvy()->IsLogin();
}
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 2000;
    QTemporaryDir appDir;
    SetAppPath(appDir.path());
    auto service = std::make_shared<CloudService>(appDir.path() + "/Cloud", CloudService::Seed::Full);
    ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
    if (!login()) {
        std::fprintf(stderr, "login failed\n");
        return 1;
    }
    ProjectDocument project;
    QString error;
    if (!project.load(BenchSetup::generatedProject(count), &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    MainWindow main(&project);
    auto *report = static_cast<PriceCheckReportWindow *>(PriceCheckReportHost::open(main.context()));

    QElapsedTimer sinceTick;
    qint64 worstGap = 0;
    QTimer ticker;
    ticker.setInterval(10);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        worstGap = std::max(worstGap, sinceTick.restart());
    });
    QEventLoop loop;
    // Queued, so the report has taken the rows and drawn its charts first.
    QObject::connect(report->run(), &PriceCheckReportRun::finished, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    QElapsedTimer total;
    total.start();
    sinceTick.start();
    ticker.start();
    report->startCheck();
    loop.exec();
    ticker.stop();
    const qint64 ms = total.elapsed();
    std::printf("bills %d  total %lld ms  (%.0f bills/s)  worst GUI stall %lld ms\n", report->model()->rowCount(), ms,
                ms ? count * 1000.0 / ms : 0.0, worstGap);
    // The service's database goes before the application does.
    ServicesUtil::setChannel(nullptr);
    return 0;
}
