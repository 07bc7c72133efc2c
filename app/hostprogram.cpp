#include "hostprogram.h"
#include "channelsetup.h"
#include "firstpaintwatch.h"
#include "heartbeatprobe.h"
#include "hoststate.h"
#include "latencychannel.h"
#include "mainwindow.h"
#include "projectdocument.h"
#include "tourrunner.h"

#include <hostapi/apppaths.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <resources/veloraresources.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QTextStream>
#include <QTimer>
#include <QUndoStack>

namespace {
bool loadSample(ProjectDocument &project, QString *error)
{
    if (!project.loadFile(ProjectDocument::samplePath(), error))
        return false;
    project.seedProjectSettings();
    return true;
}

// The project the last run closed with, when it still opens.
bool loadLast(ProjectDocument &project)
{
    const QString last = HostState::open()->value(QStringLiteral("Files/last")).toString();
    if (last.isEmpty() || !project.loadFile(last, nullptr))
        return false;
    ProjectSettingHelper::SetProjectSettingsInfo(project.savedSettings());
    return true;
}
}

void HostProgram::useChineseFont(QApplication &app)
{
    const QStringList preferred{QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("Noto Sans CJK SC"),
                                QStringLiteral("Microsoft YaHei")};
    const QStringList families = QFontDatabase().families();
    for (const QString &family : preferred) {
        if (families.contains(family)) {
            QFont font(family, 9);
            app.setFont(font);
            return;
        }
    }
}

QStringList HostProgram::runTour(const QString &dir, QString *error, const QString &channelText)
{
    ProjectDocument project;
    if (!loadSample(project, error))
        return {};
    MainWindow window(&project);
    window.setChannelText(channelText);
    TourRunner tour(&window, dir);
    const QStringList files = tour.run(error);
    // What the tour did to the sample is not the user's to save.
    window.undoStack()->clear();
    window.close();
    return files;
}

int HostProgram::run(QApplication &app)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Velora host: a unit project with the cloud module."));
    parser.addHelpOption();
    const QCommandLineOption tour(QStringLiteral("tour"), QStringLiteral("Render every dialog to PNG files in DIR and exit."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption appDir(QStringLiteral("app-dir"), QStringLiteral("Application data folder."),
                                    QStringLiteral("DIR"));
    const QCommandLineOption heartbeat(QStringLiteral("heartbeat-log"),
                                       QStringLiteral("Log every event-loop stall over 16 ms to FILE."),
                                       QStringLiteral("FILE"));
    const QCommandLineOption latency(QStringLiteral("cloud-latency"),
                                     QStringLiteral("Delay every cloud reply by MS milliseconds."), QStringLiteral("MS"));
    parser.addOption(tour);
    parser.addOption(appDir);
    const QCommandLineOption firstPaint(QStringLiteral("first-paint"),
                                        QStringLiteral("Print the time to the main window's first paint and exit."));
    parser.addOption(heartbeat);
    parser.addOption(firstPaint);
    parser.addOption(latency);
    parser.process(app);
    if (parser.isSet(appDir))
        SetAppPath(parser.value(appDir));
    veloraInitResources();
    useChineseFont(app);
    ServicesUtil::publish();
    QTextStream out(stdout);
    const QString channel = ChannelSetup::install();
    if (parser.isSet(latency) && ServicesUtil::channel())
        ServicesUtil::setChannel(
            std::make_shared<LatencyChannel>(ServicesUtil::channel(), parser.value(latency).toInt()));
    const QString note = ChannelSetup::firstRunNote();
    if (!note.isEmpty())
        out << note << '\n';

    if (parser.isSet(tour)) {
        const QString dir = QDir(parser.value(tour)).absolutePath();
        const QString signIn = channel.isEmpty() ? QString() : ChannelSetup::signInDemo();
        if (!signIn.isEmpty())
            QTextStream(stderr) << "tour: demo login: " << signIn << '\n';
        QString error;
        const QStringList files = runTour(dir, &error, channel);
        if (!error.isEmpty())
            QTextStream(stderr) << "tour: " << error << '\n';
        out << "tour: " << files.size() << " PNG files in " << dir << '\n';
        // The service's databases close while Qt SQL is still alive.
        ServicesUtil::setChannel(nullptr);
        return files.isEmpty() ? 1 : 0;
    }

    ProjectDocument project;
    QString error;
    if (!loadLast(project) && !loadSample(project, &error)) {
        QTextStream(stderr) << error << '\n';
        ServicesUtil::setChannel(nullptr);
        return 1;
    }
    MainWindow window(&project);
    window.setChannelText(channel);
    window.restoreLayout();
    if (parser.isSet(firstPaint))
        new FirstPaintWatch(&window);
    window.show();
    QFile heartbeatLog(parser.value(heartbeat));
    HeartbeatProbe probe;
    if (parser.isSet(heartbeat) && heartbeatLog.open(QIODevice::WriteOnly | QIODevice::Text)) {
        probe.setLog(&heartbeatLog, 16);
        probe.start();
    }
    // Names a server that is down in the status bar from the start.
    if (!channel.isEmpty())
        QTimer::singleShot(0, &window, [] { ServerRegistry::instance()->refresh(); });
    const int code = app.exec();
    if (heartbeatLog.isOpen())
        heartbeatLog.write(QByteArray("worst gap ") + QByteArray::number(probe.worstGapMs(), 'f', 1) + " ms\n");
    ServicesUtil::setChannel(nullptr);
    return code;
}
