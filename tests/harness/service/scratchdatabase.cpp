#include "scratchdatabase.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

namespace {
QString clusterUrl() { return QString::fromLocal8Bit(qgetenv("VELORA_TEST_PG")); }
}

bool ScratchDatabase::wanted()
{
    return qgetenv("VELORA_TEST_STORE") == "postgresql";
}

QString ScratchDatabase::skipReason()
{
    if (!wanted() || !clusterUrl().isEmpty())
        return QString();
    return QStringLiteral("PostgreSQL variant: VELORA_TEST_PG is not set (scripts/run-tests.sh starts a scratch"
                          " cluster with scripts/pg-scratch.sh and sets it)");
}

ScratchDatabase::ScratchDatabase(const QString &templateDb)
{
    if (!wanted() || clusterUrl().isEmpty())
        return;
    static int counter = 0;
    m_name = QStringLiteral("vt_%1_%2").arg(QCoreApplication::applicationPid()).arg(++counter);
    admin(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(m_name));
    admin(QStringLiteral("CREATE DATABASE %1%2").arg(m_name, templateDb.isEmpty() ? QString() : QStringLiteral(" TEMPLATE ") + templateDb));
}

ScratchDatabase::~ScratchDatabase()
{
    if (!m_name.isEmpty())
        admin(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(m_name));
}

QString ScratchDatabase::url() const
{
    if (m_name.isEmpty())
        return QString();
    QUrl url(clusterUrl());
    url.setPath(QLatin1Char('/') + m_name);
    return url.toString();
}

void ScratchDatabase::admin(const QString &statement)
{
    QSqlDatabase db = QSqlDatabase::database(QStringLiteral("velora_scratch_admin"), false);
    if (!db.isValid()) {
        const QUrl url(clusterUrl());
        db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("velora_scratch_admin"));
        db.setHostName(url.host());
        db.setPort(url.port(5432));
        db.setUserName(url.userName());
        db.setPassword(url.password());
        db.setDatabaseName(url.path().mid(1));
        if (!db.open())
            qFatal("scratch database: cannot reach %s: %s", qPrintable(clusterUrl()), qPrintable(db.lastError().text()));
        QSqlQuery(db).exec(QStringLiteral("SET client_min_messages = warning"));
    }
    QSqlQuery q(db);
    if (!q.exec(statement))
        qFatal("scratch database: %s: %s", qPrintable(statement), qPrintable(q.lastError().text()));
}
