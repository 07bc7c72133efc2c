#include "serveroptions.h"

#include <QRegularExpression>

namespace {

bool takeValue(const QStringList &args, int &i, QString *value, QString *error)
{
    if (i + 1 >= args.size()) {
        *error = QStringLiteral("%1 needs a value").arg(args.at(i));
        return false;
    }
    *value = args.at(++i);
    return true;
}

bool parseInt(const QString &text, qint64 min, qint64 max, qint64 *out)
{
    bool ok = false;
    const qint64 v = text.toLongLong(&ok);
    if (!ok || v < min || v > max)
        return false;
    *out = v;
    return true;
}

} // namespace

bool ServerOptions::isValidListen(const QString &listen)
{
    static const QRegularExpression re(QStringLiteral("^(\\[[0-9A-Fa-f:.]+\\]|[^:\\[\\]\\s]+):(\\d{1,5})$"));
    const QRegularExpressionMatch m = re.match(listen);
    return m.hasMatch() && m.captured(2).toInt() <= 65535;
}

bool ServerOptions::parse(const QStringList &args, QString *error)
{
    for (int i = 0; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        QString value;
        qint64 number = 0;
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            help = true;
        } else if (arg == QLatin1String("--data")) {
            if (!takeValue(args, i, &dataDir, error))
                return false;
        } else if (arg == QLatin1String("--database")) {
            if (!takeValue(args, i, &database, error))
                return false;
            if (!database.startsWith(QLatin1String("postgresql://"))) {
                *error = QStringLiteral("--database wants postgresql://USER@HOST:PORT/DBNAME, got \"%1\"").arg(database);
                return false;
            }
        } else if (arg == QLatin1String("--listen")) {
            if (!takeValue(args, i, &listen, error))
                return false;
            if (!isValidListen(listen)) {
                *error = QStringLiteral("--listen wants ADDR:PORT, got \"%1\"").arg(listen);
                return false;
            }
        } else if (arg == QLatin1String("--threads")) {
            if (!takeValue(args, i, &value, error))
                return false;
            if (!parseInt(value, 1, 512, &number)) {
                *error = QStringLiteral("--threads wants a number from 1 to 512, got \"%1\"").arg(value);
                return false;
            }
            threads = int(number);
        } else if (arg == QLatin1String("--max-body")) {
            if (!takeValue(args, i, &value, error))
                return false;
            if (!parseInt(value, 1024, qint64(1) << 30, &number)) {
                *error = QStringLiteral("--max-body wants bytes from 1024 to 1073741824, got \"%1\"").arg(value);
                return false;
            }
            maxBodyBytes = number;
        } else if (arg == QLatin1String("--seed")) {
            if (!takeValue(args, i, &seed, error))
                return false;
            if (seed != QLatin1String("full") && seed != QLatin1String("minimal") && seed != QLatin1String("none")) {
                *error = QStringLiteral("--seed wants full, minimal or none, got \"%1\"").arg(seed);
                return false;
            }
        } else {
            *error = QStringLiteral("unknown argument \"%1\"").arg(arg);
            return false;
        }
    }
    if (!help && dataDir.isEmpty() && database.isEmpty()) {
        *error = QStringLiteral("--data DIR or --database URL is required");
        return false;
    }
    return true;
}

QString ServerOptions::usage()
{
    return QStringLiteral(
        "usage: velora-cloud --data DIR | --database URL [--listen ADDR:PORT] [--threads N] [--max-body BYTES]\n"
        "                    [--seed full|minimal|none]\n"
        "  --data DIR          data folder of the cloud service (created if missing): a SQLite file\n"
        "  --database URL      a PostgreSQL database instead, postgresql://USER@HOST[:PORT]/DBNAME;\n"
        "                      the password comes from PGPASSWORD or ~/.pgpass. Any number of\n"
        "                      velora-cloud processes may share one database\n"
        "  --listen ADDR:PORT  address to serve on (default 127.0.0.1:8686; port 0 picks a free port)\n"
        "  --threads N         requests handled at once (default 32); connections are read and\n"
        "                      written by four times as many threads (at least 64)\n"
        "  --max-body BYTES    largest request body accepted (default 8388608)\n"
        "  --seed KIND         demo data put into an empty data folder (default full)\n"
        "Endpoints: POST /cloud (JSON envelope, session in X-Velora-Session), GET /health.\n"
        "Stops cleanly on SIGINT or SIGTERM.\n");
}
