#pragma once
#include <QString>
#include <QStringList>

class QApplication;

// velora-host's start: options, the application folder, the cloud channel,
// the sample project and the main window (or the offscreen tour).
class HostProgram
{
public:
    // Runs the program; returns the exit code.
    static int run(QApplication &app);
    // The CJK-capable font the host uses, so Chinese text renders offscreen.
    static void useChineseFont(QApplication &app);
    // Builds the main window on the sample project and writes the tour into
    // `dir` over the installed cloud channel; returns the written files
    // (empty and `error` set on failure).
    static QStringList runTour(const QString &dir, QString *error, const QString &channelText = QString());
};
