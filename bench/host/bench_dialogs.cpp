// Construction and first paint of every dialog the host opens (menu
// functions and the host's own dialogs), offscreen, on the sample project
// over the embedded cloud: the time from the menu call to the first dialog
// rendered (QWidget::grab paints it in full). Each dialog runs once in a
// process of its own (the first dialog of the process, the main window
// already up, on an application folder used before) and again in one
// process after a first pass over all of them (warm), beside a plain
// QDialog of the same size and widget count built in the same run.
//
//   QT_QPA_PLATFORM=offscreen build-bench/bench/host/bench_dialogs
//   ... bench_dialogs --repeat <dialog> [n]   one dialog warm, n times (for a profiler)
#include "benchsetup.h"

#include <dialogregistry.h>
#include <hostdialogtour.h>
#include <hostprogram.h>
#include <latencychannel.h>
#include <mainwindow.h>
#include <materialtablemodel.h>
#include <projectdocument.h>

#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/gljbean.h>
#include <hostapi/messagebox.h>
#include <hostapi/modalrun.h>
#include <hostapi/servicesutil.h>

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QUndoStack>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

namespace {
using Step = std::function<QWidget *(HostContext &)>;

double threadCpuMs()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

struct Shot
{
    double ms = -1;
    double cpuMs = -1;
    int widgets = 0;
    QSize size;
};

QList<QPair<QString, Step>> steps()
{
    QList<QPair<QString, Step>> list;
    for (const HostDialogEntry &entry : DialogRegistry::entries())
        list.append({entry.id, entry.open});
    for (const HostDialogTour::Step &step : HostDialogTour::steps()) {
        const auto run = step.run;
        list.append({step.id, [run](HostContext &host) -> QWidget * {
                         run(host);
                         return nullptr;
                     }});
    }
    return list;
}

// Calls `check` from the event loop after any dialog is shown.
class ShowWatch : public QObject
{
public:
    explicit ShowWatch(std::function<void()> check) : m_check(std::move(check)) {}
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QDialog *>(watched))
            QTimer::singleShot(0, this, m_check);
        return false;
    }

private:
    std::function<void()> m_check;
};

// Runs one step; the first window it shows is rendered and timed, every
// modal run is then answered with 0.
Shot measure(MainWindow &window, const Step &step)
{
    Shot shot;
    QElapsedTimer clock;
    double cpu0 = 0;
    auto take = [&](QWidget *widget) {
        if (shot.ms >= 0)
            return;
        if (!widget->isVisible())
            widget->show();
        widget->grab();
        shot.ms = clock.nsecsElapsed() / 1e6;
        shot.cpuMs = threadCpuMs() - cpu0;
        shot.widgets = widget->findChildren<QWidget *>().size();
        shot.size = widget->size();
    };
    ModalRun::setAnswerer([&](QDialog *dialog) {
        take(dialog);
        return 0;
    });
    // A dialog that runs exec() itself is taken and rejected when it is up:
    // looked at once its loop runs after each show (a polling timer would
    // spin the GUI thread through every wait and count as its CPU).
    auto check = [&] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            take(dialog);
            dialog->reject();
        }
    };
    ShowWatch watch(check);
    qApp->installEventFilter(&watch);
    clock.start();
    cpu0 = threadCpuMs();
    QPointer<QWidget> left = step(window.context());
    qApp->removeEventFilter(&watch);
    if (left) {
        take(left);
        left->close();
        left->deleteLater();
    }
    ModalRun::setAnswerer(nullptr);
    QApplication::processEvents();
    // Outside exec() deleteLater() waits for a loop that never starts: without
    // this the closed dialogs would pile up, and a modeless one be reused.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return shot;
}

// A plain dialog of that size and widget count, built and rendered.
Shot plainDialog(const Shot &like)
{
    QElapsedTimer clock;
    clock.start();
    const double cpu0 = threadCpuMs();
    QDialog dialog;
    auto *grid = new QGridLayout(&dialog);
    for (int i = 0; i < like.widgets; ++i) {
        QWidget *w = nullptr;
        switch (i % 3) {
        case 0: w = new QLabel(QStringLiteral("标签 %1").arg(i)); break;
        case 1: w = new QLineEdit(QStringLiteral("%1").arg(i)); break;
        default: w = new QPushButton(QStringLiteral("按钮")); break;
        }
        grid->addWidget(w, i / 6, i % 6);
    }
    dialog.resize(like.size);
    dialog.show();
    dialog.grab();
    Shot shot;
    shot.ms = clock.nsecsElapsed() / 1e6;
    shot.cpuMs = threadCpuMs() - cpu0;
    return shot;
}

// One dialog, once to warm up and then n times; prints the median and the best run.
int repeat(MainWindow &window, const QString &id, int n)
{
    for (const auto &step : steps()) {
        if (step.first != id)
            continue;
        measure(window, step.second);
        QVector<double> wall, cpu;
        for (int i = 0; i < n; ++i) {
            const Shot shot = measure(window, step.second);
            wall.append(shot.ms);
            cpu.append(shot.cpuMs);
        }
        std::sort(wall.begin(), wall.end());
        std::sort(cpu.begin(), cpu.end());
        std::printf("%s: median %.1f ms wall / %.1f ms GUI CPU, best %.1f / %.1f, %d runs\n", qPrintable(id),
                    wall[n / 2], cpu[n / 2], wall.first(), cpu.first(), n);
        return 0;
    }
    std::fprintf(stderr, "no dialog %s\n", qPrintable(id));
    return 1;
}

struct Host
{
    QTemporaryDir appDir;
    ProjectDocument project;
    std::unique_ptr<MainWindow> window;
    std::shared_ptr<LatencyChannel> channel;

    // In `dir` when given (a folder another run has filled), else a new one.
    bool open(const QString &dir)
    {
        QString error;
        channel = BenchSetup::installCloud((dir.isEmpty() ? appDir.path() : dir) + "/", &error);
        if (!channel || !project.loadFile(ProjectDocument::samplePath(), &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return false;
        }
        project.seedProjectSettings();
        MessageBoxes::setHandler([](const MessageBoxRequest &) { return 0; });
        window = std::make_unique<MainWindow>(&project);
        checkMaterials();
        window->show();
        window->grab();
        QApplication::processEvents();
        return true;
    }
    // The deviation chart needs a price check to show: every material
    // checked against a cloud price a fifth below its own.
    void checkMaterials()
    {
        auto *model = static_cast<MaterialTableModel *>(window->materialModel());
        QList<CloudCjyjcBean> results;
        for (const GljBean *m : model->materials()) {
            CloudCjyjcBean checked;
            checked.setGuid(m->GetGuid());
            checked.setYdj(m->GetTj() * 0.8);
            checked.setChecked(true);
            results.append(checked);
        }
        model->setCheckResults(results);
    }
    ~Host()
    {
        if (window)
            window->undoStack()->clear();
        window.reset();
        MessageBoxes::setHandler(nullptr);
        ServicesUtil::setChannel(nullptr);
    }
};

Shot firstInProcess(const QString &program, const QString &id, const QString &dir)
{
    QProcess child;
    child.start(program, {QStringLiteral("--first"), id, dir});
    child.waitForFinished(120000);
    const QStringList out = QString::fromLatin1(child.readAllStandardOutput()).split(' ');
    Shot shot;
    shot.ms = out.value(0).toDouble();
    shot.cpuMs = out.value(1).toDouble();
    return shot;
}
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    HostProgram::useChineseFont(app);
    const QStringList args = app.arguments();
    const bool child = args.value(1) == QLatin1String("--first");
    Host host;
    if (!host.open(child ? args.value(3) : QString()))
        return 1;
    if (args.value(1) == QLatin1String("--repeat"))
        return repeat(*host.window, args.value(2), qMax(1, args.value(3).toInt()));
    if (child) {
        for (const auto &step : steps())
            if (step.first == args.value(2)) {
                const Shot shot = measure(*host.window, step.second);
                std::printf("%.1f %.1f\n", shot.ms, shot.cpuMs);
            }
        return 0;
    }
    std::printf("load %s\n\nwall ms / GUI thread CPU ms\n\n| dialog | widgets | first of process | warm | plain Qt |\n"
                "|---|---|---|---|---|\n",
                qPrintable(BenchSetup::loadAverage()));
    // One pass builds what an application folder builds on first use (feature
    // libraries, place dictionary), so that the first-of-process runs on a
    // folder as a user's second start finds it.
    for (const auto &step : steps())
        measure(*host.window, step.second);
    double worstFirst = 0, worstWarm = 0;
    for (const auto &step : steps()) {
        const Shot first = firstInProcess(app.applicationFilePath(), step.first, host.appDir.path());
        const Shot warm = measure(*host.window, step.second);
        const Shot plain = plainDialog(warm);
        worstFirst = std::max(worstFirst, first.cpuMs);
        worstWarm = std::max(worstWarm, warm.cpuMs);
        std::printf("| %s | %d | %.1f / %.1f | %.1f / %.1f | %.1f / %.1f |\n", qPrintable(step.first), warm.widgets,
                    first.ms, first.cpuMs, warm.ms, warm.cpuMs, plain.ms, plain.cpuMs);
        std::fflush(stdout);
    }
    std::printf("\nworst GUI thread CPU: first of process %.1f ms, warm %.1f ms; load %s\n", worstFirst, worstWarm,
                qPrintable(BenchSetup::loadAverage()));
    return 0;
}
