#include "hostprogram.h"
#include "channelsetup.h"
#include "hoststate.h"
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
    parser.addOption(tour);
    parser.addOption(appDir);
    parser.process(app);
    if (parser.isSet(appDir))
        SetAppPath(parser.value(appDir));
    veloraInitResources();
    useChineseFont(app);
    ServicesUtil::publish();
    QTextStream out(stdout);
    const QString channel = ChannelSetup::install();
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
    window.show();
    // Names a server that is down in the status bar from the start.
    if (!channel.isEmpty())
        QTimer::singleShot(0, &window, [] { ServerRegistry::instance()->refresh(); });
    const int code = app.exec();
    ServicesUtil::setChannel(nullptr);
    return code;
}
