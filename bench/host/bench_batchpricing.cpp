// Batch pricing of a generated project of N bills (default 2000) end to end
// through the host's batch path (match requests on the background run,
// compositions written in one undo step, the summary filled) on the embedded
// cloud holding S generated bills (default 1,000,000) beside its seed. The
// store's set-up (seed, one-transaction bulk insert, the service's index
// built at open) is timed apart.
//
//   QT_QPA_PLATFORM=offscreen build-bench/bench/host/bench_batchpricing [bills] [stored bills]
#include "benchsetup.h"

#include <batchpricingsummary.h>
#include <mainwindow.h>
#include <projectdocument.h>
#include <smartpricinghost.h>

#include <hostapi/messagebox.h>
#include <hostapi/modalrun.h>
#include <hostapi/servicesutil.h>
#include <service/cloudservice.h>

#include "../matching/benchutil.h"
#include "../matching/corpusgenerator.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QVector>

#include <cstdio>

namespace {
// A null text would be bound as NULL.
QVariant text(const QString &value)
{
    return value.isNull() ? QVariant(QStringLiteral("")) : QVariant(value);
}

struct Template
{
    QVariant tier, owner, source, projectId, zhdj, zjnr;
};

// Adds `count` generated bills in one transaction, each taking the scope,
// project and composition of one of the seeded accumulated bills in turn.
QString bulkInsert(const QString &file, int count)
{
    CorpusGenerator gen;
    QString error;
    if (!gen.load(BenchUtil::dataDir(), &error))
        return error;
    QString failure;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bulk"));
        db.setDatabaseName(file);
        if (!db.open())
            return db.lastError().text();
        QSqlQuery q(db);
        QVector<Template> templates;
        q.exec("SELECT tier, owner, source, project_id, zhdj, zjnr FROM bills WHERE zjnr <> '' AND project_id <> 0");
        while (q.next())
            templates.append({q.value(0), q.value(1), q.value(2), q.value(3), q.value(4), q.value(5)});
        if (templates.isEmpty())
            return QStringLiteral("no seeded bill with a composition");
        db.transaction();
        q.prepare("INSERT INTO bills(tier, owner, source, project_id, qdbh, xmmc, jldw, xmtz, gznr, zhdj, zjnr, created)"
                  " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, '2024-01-01 00:00:00')");
        for (int i = 0; i < count && failure.isEmpty(); ++i) {
            const BillRecord r = gen.next(i);
            const Template &t = templates.at(i % templates.size());
            for (const QVariant &v : {t.tier, t.owner, t.source, t.projectId, text(r.code + "001"), text(r.name),
                                      text(r.unit), text(r.features), text(r.workContent), t.zhdj, t.zjnr})
                q.addBindValue(v);
            if (!q.exec())
                failure = q.lastError().text();
        }
        if (failure.isEmpty() && !db.commit())
            failure = db.lastError().text();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bulk"));
    return failure;
}
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 2000;
    const int stored = argc > 2 ? QByteArray(argv[2]).toInt() : 1000000;
    QTemporaryDir appDir;
    const QString cloudDir = appDir.path() + "/Cloud";
    QElapsedTimer t;
    t.start();
    double cpu = BenchSetup::cpuMs();
    { CloudService seed(cloudDir, CloudService::Seed::Full); }
    const qint64 seedMs = t.restart();
    const QString insertError = bulkInsert(cloudDir + "/velora-cloud.db", stored);
    if (!insertError.isEmpty()) {
        std::fprintf(stderr, "bulk insert: %s\n", qPrintable(insertError));
        return 1;
    }
    const qint64 insertMs = t.restart();
    QString error;
    const auto channel = BenchSetup::installCloud(appDir.path() + "/", &error);
    if (!channel) {
        std::fprintf(stderr, "cloud: %s\n", qPrintable(error));
        return 1;
    }
    const qint64 openMs = t.restart();
    const double setupCpu = BenchSetup::cpuMs() - cpu;
    std::printf("set-up: seed %lld ms, insert %d bills %lld ms, open with index %lld ms, CPU %.0f ms, RSS %.0f MiB\n",
                seedMs, stored, insertMs, openMs, setupCpu, BenchUtil::rssMiB());

    ProjectDocument project;
    if (!project.load(BenchSetup::generatedProject(count), &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    MessageBoxes::setHandler([](const MessageBoxRequest &) { return 0; });
    {
        MainWindow window(&project);
        window.show();
        QApplication::processEvents();
        // The set-up dialog is answered as the tour answers it; the clock
        // runs from its end to the summary on screen.
        qint64 wallMs = -1;
        double cpuMs = 0;
        QString counts;
        ModalRun::setAnswerer([&](QDialog *dialog) {
            if (auto *summary = qobject_cast<BatchPricingSummary *>(dialog)) {
                summary->show();
                QApplication::processEvents();
                wallMs = t.elapsed();
                cpuMs = BenchSetup::cpuMs() - cpu;
                counts = summary->countsText();
            } else {
                t.restart();
                cpu = BenchSetup::cpuMs();
            }
            return 0;
        });
        HostContext &context = window.context();
        context.tour = true;
        SmartPricingHost::tourBatch(context);
        context.tour = false;
        ModalRun::setAnswerer(nullptr);
        std::printf("| %d | %d | %lld | %.0f | %s | %s |\n", count, stored, wallMs, cpuMs, qPrintable(counts),
                    qPrintable(BenchSetup::loadAverage()));
        window.undoStack()->clear();
    }
    MessageBoxes::setHandler(nullptr);
    ServicesUtil::setChannel(nullptr);
    return 0;
}
