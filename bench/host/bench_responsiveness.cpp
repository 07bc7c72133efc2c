// How long the host's event loop is ever kept from running while cloud
// requests are slow. Every menu function and every host dialog runs as the
// tour runs it, on a generated project of N bills (default 2000), over the
// embedded cloud whose replies are delayed by L ms (default 1000); a 1 ms
// heartbeat on the GUI thread records the largest gap between its ticks.
// Modal dialogs stay up for L + 300 ms before they are answered. The batch
// paths (batch pricing, project check report) send one request per bill, so
// they run without the delay (the GUI thread's share does not depend on it).
//
//   QT_QPA_PLATFORM=offscreen build-bench/bench/host/bench_responsiveness [bills] [latency ms] [only id]
#include "benchsetup.h"

#include <dialogregistry.h>
#include <heartbeatprobe.h>
#include <hostdialogtour.h>
#include <hostprogram.h>
#include <latencychannel.h>
#include <mainwindow.h>
#include <projectdocument.h>

#include <hostapi/messagebox.h>
#include <hostapi/modalrun.h>
#include <hostapi/servicesutil.h>

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QUndoStack>

#include <cstdio>
#include <functional>

namespace {
using Step = std::function<QWidget *(HostContext &)>;

void settle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

bool isBatch(const QString &id)
{
    return id == QLatin1String("batchpricing") || id == QLatin1String("pricecheckreport");
}

struct Runner
{
    MainWindow *window;
    LatencyChannel *channel;
    HeartbeatProbe *probe;
    int latency;
    double worst = 0;
    double worstCpu = 0;

    void run(const QString &id, const Step &step)
    {
        const int delay = isBatch(id) ? 0 : latency;
        channel->setDelay(delay);
        const int hold = delay + 300;
        ModalRun::setAnswerer([hold](QDialog *dialog) {
            dialog->show();
            settle(hold);
            return 0;
        });
        // Dialogs that run exec() themselves are rejected once seen.
        QTimer watchdog;
        watchdog.setInterval(hold);
        QObject::connect(&watchdog, &QTimer::timeout, [] {
            if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
                dialog->reject();
        });
        HostContext &context = window->context();
        const double cpu0 = BenchSetup::cpuMs();
        QElapsedTimer wall;
        wall.start();
        probe->resetWorst();
        watchdog.start();
        context.tour = true;
        QPointer<QWidget> left = step(context);
        context.tour = false;
        watchdog.stop();
        if (left) {
            settle(hold);
            left->close();
            left->deleteLater();
        }
        QApplication::processEvents();
        const double gap = probe->worstGapMs();
        const double cpuGap = probe->worstCpuGapMs();
        worst = std::max(worst, gap);
        worstCpu = std::max(worstCpu, cpuGap);
        std::printf("| %s | %d | %.0f | %.0f | %.1f | %.1f |\n", qPrintable(id), delay, double(wall.elapsed()),
                    BenchSetup::cpuMs() - cpu0, gap, cpuGap);
        std::fflush(stdout);
    }
};
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    HostProgram::useChineseFont(app);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 2000;
    const int latency = argc > 2 ? QByteArray(argv[2]).toInt() : 1000;
    const QString only = argc > 3 ? QString::fromLocal8Bit(argv[3]) : QString();
    QTemporaryDir appDir;
    QString error;
    const std::shared_ptr<LatencyChannel> channel = BenchSetup::installCloud(appDir.path() + "/", &error);
    if (!channel) {
        std::fprintf(stderr, "cloud: %s\n", qPrintable(error));
        return 1;
    }
    ProjectDocument project;
    if (!project.load(BenchSetup::generatedProject(count), &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    MessageBoxes::setHandler([](const MessageBoxRequest &) { return 0; });
    int code = 0;
    {
        MainWindow window(&project);
        window.show();
        QApplication::processEvents();
        // Each stall over the bar is also logged on stderr, between the
        // host's own log lines.
        QFile gapLog;
        gapLog.open(stderr, QIODevice::WriteOnly);
        HeartbeatProbe probe;
        probe.setLog(&gapLog, 16);
        probe.start();
        Runner runner{&window, channel.get(), &probe, latency};
        std::printf("%d bills, cloud replies delayed %d ms, load %s\n\n", count, latency,
                    qPrintable(BenchSetup::loadAverage()));
        std::printf("| step | delay ms | wall ms | CPU ms | worst gap ms | its GUI CPU ms |\n|---|---|---|---|---|---|\n");
        for (const HostDialogEntry &entry : DialogRegistry::entries()) {
            if (only.isEmpty() || only == entry.id)
                runner.run(entry.id, entry.tour ? entry.tour : entry.open);
        }
        for (const HostDialogTour::Step &step : HostDialogTour::steps()) {
            const auto run = step.run;
            if (only.isEmpty() || only == step.id)
                runner.run(step.id, [run](HostContext &host) -> QWidget * {
                    run(host);
                    return nullptr;
                });
        }
        probe.stop();
        std::printf("\nworst gap %.1f ms (GUI thread CPU in a gap at most %.1f ms), load %s\n", runner.worst,
                    runner.worstCpu, qPrintable(BenchSetup::loadAverage()));
        code = runner.worst > 16 ? 2 : 0;
        window.undoStack()->clear();
    }
    MessageBoxes::setHandler(nullptr);
    ServicesUtil::setChannel(nullptr);
    return code;
}
