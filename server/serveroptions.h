#pragma once
#include <QString>
#include <QStringList>

// Command line of velora-cloud.
class ServerOptions
{
public:
    static constexpr qint64 DefaultMaxBodyBytes = 8 * 1024 * 1024;

    QString dataDir;
    QString database; // "postgresql://..." instead of the SQLite file in dataDir
    QString listen = QStringLiteral("127.0.0.1:8686");
    int threads = 32;
    qint64 maxBodyBytes = DefaultMaxBodyBytes;
    QString seed = QStringLiteral("full");
    bool help = false;

    // Parses the arguments after the program name. On error returns false and
    // sets `error` to a one-line explanation.
    bool parse(const QStringList &args, QString *error);

    static QString usage();
    // "ADDR:PORT" with a non-empty address ("[v6]" allowed) and a port 0-65535.
    static bool isValidListen(const QString &listen);
};
