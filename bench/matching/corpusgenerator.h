#pragma once
#include <service/matching/billindex.h>

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <random>

// Synthetic bills for benchmarks, with vocabulary taken from the real data
// files: standard codes, names, units, feature names and work content from the
// standard bills, feature values and whole bill texts from the project bills.
// The same seed gives the same corpus.
class CorpusGenerator
{
public:
    // `dataDir` holds standard-bills/ and project-bills/.
    bool load(const QString &dataDir, QString *error);
    void reseed(quint64 seed) { m_rng.seed(seed); }
    BillRecord next(qint64 id);
    // A bill to price: as next() but with a plain 9-digit code.
    BillQuery nextQuery();

private:
    struct Standard
    {
        QString code, name, unit;
        QStringList features, work;
    };
    struct Project
    {
        QString name, features;
        QStringList quotaNames;
    };
    int pick(int n) { return int(m_rng() % quint64(n)); }
    bool chance(int percent) { return pick(100) < percent; }
    QString value(const QString &label);
    QString perturbNumbers(const QString &text);
    void fill(BillRecord &r);

    QVector<Standard> m_standards;
    QVector<Project> m_projects;
    QHash<QString, QStringList> m_values;
    QStringList m_allValues;
    std::mt19937_64 m_rng{42};
};
