#include <resources/veloraresources.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLabel>
#include <QMainWindow>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("velora-host"));
    veloraInitResources();

    QCommandLineParser parser;
    parser.addHelpOption();
    QCommandLineOption tour(QStringLiteral("tour"), QStringLiteral("Render every dialog to PNG files in DIR and exit."),
                            QStringLiteral("DIR"));
    parser.addOption(tour);
    parser.process(app);

    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Velora"));
    window.setCentralWidget(new QLabel(QStringLiteral("Velora"), &window));
    window.resize(1024, 700);

    if (parser.isSet(tour)) {
        const QString dir = parser.value(tour);
        QDir().mkpath(dir);
        window.show();
        const QString file = QDir(dir).filePath(QStringLiteral("00-main-window.png"));
        window.grab().save(file);
        QTextStream(stdout) << "tour: " << QDir(dir).absolutePath() << '\n';
        return 0;
    }
    window.show();
    return app.exec();
}
