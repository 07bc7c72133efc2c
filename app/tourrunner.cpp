#include "tourrunner.h"
#include "dialogregistry.h"
#include "hostdialogtour.h"
#include "mainwindow.h"

#include <hostapi/exceptionguard.h>
#include <hostapi/messagebox.h>
#include <hostapi/modalrun.h>

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>
#include <QPointer>
#include <QTimer>

TourRunner::TourRunner(MainWindow *window, const QString &dir) : m_window(window), m_dir(dir) {}

bool TourRunner::grab(QWidget *widget, const QString &name)
{
    if (!widget->isVisible())
        widget->show();
    QApplication::processEvents();
    const QString file = QDir(m_dir).filePath(name + QStringLiteral(".png"));
    if (!widget->grab().save(file, "PNG")) {
        m_errors << QStringLiteral("cannot write %1").arg(file);
        return false;
    }
    m_files << file;
    return true;
}

void TourRunner::runEntry(int number, const QString &id)
{
    const HostDialogEntry *entry = DialogRegistry::find(id);
    if (!entry)
        return;
    runStep(number, id, entry->tour ? entry->tour : entry->open);
}

void TourRunner::runStep(int number, const QString &id, const std::function<QWidget *(HostContext &)> &step)
{
    const QString base = QStringLiteral("%1-%2").arg(number, 2, 10, QLatin1Char('0')).arg(id);
    int shot = 0;
    auto nextName = [&] {
        const int n = shot++;
        return n == 0 ? base : QStringLiteral("%1-%2").arg(base).arg(n);
    };
    QList<QPointer<QDialog>> seen;
    auto grabOnce = [&](QDialog *dialog) {
        for (const QPointer<QDialog> &d : seen) {
            if (d == dialog)
                return;
        }
        seen.append(dialog);
        grab(dialog, nextName());
    };
    // Every modal run is a picture: a step may show one dialog twice (a
    // wizard's pages) and nested dialogs on the way.
    const ModalRun::Answerer previous = ModalRun::answerer();
    ModalRun::setAnswerer([&](QDialog *dialog) {
        if (!seen.contains(dialog))
            seen.append(dialog);
        grab(dialog, nextName());
        return 0;
    });
    // A dialog that runs exec() itself would block the offscreen run: grab
    // and reject whatever modal dialog is up.
    QTimer watchdog;
    watchdog.setInterval(100);
    QObject::connect(&watchdog, &QTimer::timeout, [&grabOnce] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            grabOnce(dialog);
            dialog->reject();
        }
    });
    watchdog.start();
    HostContext &context = m_window->context();
    context.tour = true;
    QPointer<QWidget> left = GUARDED("VeloraHost", [&]() -> QWidget * { return step(context); });
    context.tour = false;
    watchdog.stop();
    if (left) {
        grab(left, nextName());
        left->close();
        left->deleteLater();
    }
    ModalRun::setAnswerer(previous);
}

QStringList TourRunner::run(QString *error)
{
    if (!QDir().mkpath(m_dir)) {
        if (error)
            *error = QStringLiteral("cannot create %1").arg(m_dir);
        return {};
    }
    const bool ownBoxes = !MessageBoxes::hasHandler();
    if (ownBoxes)
        MessageBoxes::setHandler([](const MessageBoxRequest &) { return 0; });
    m_window->show();
    grab(m_window, QStringLiteral("00-main-window"));
    int number = 1;
    for (const HostDialogEntry &entry : DialogRegistry::entries())
        runEntry(number++, entry.id);
    for (const HostDialogTour::Step &step : HostDialogTour::steps()) {
        const auto run = step.run;
        runStep(number++, step.id, [run](HostContext &host) -> QWidget * {
            run(host);
            return nullptr;
        });
    }
    QApplication::processEvents();
    if (ownBoxes)
        MessageBoxes::setHandler(nullptr);
    if (error)
        *error = m_errors.join(QLatin1Char('\n'));
    return m_files;
}
