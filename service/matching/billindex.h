#pragma once
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <mutex>
#include <vector>

// One stored bill as the matcher sees it. `source` is 1 for a standard bill and
// 2 for an accumulated project bill; `projectId` is empty for standard bills.
// `scope` tells whose data it is (a tier owner key chosen by the caller; empty
// for data everybody may see). `payload` is the caller's own handle (a row id).
struct BillRecord
{
    qint64 id = 0;
    int source = 1;
    QString projectId;
    QString scope;
    QString code;        // 9-digit standard code, may be empty
    QString name;
    QString unit;
    QString features;    // item features, usually several lines
    QString workContent;
    qint64 payload = 0;
    QStringList quotaNames; // the composition's quota names, when known
};

// What to match against. Text fields describe the bill being priced; empty
// fields simply do not contribute. `sourceMask`: 1 standard, 2 accumulated,
// 3 both (0 matches nothing). `projectIds` limits accumulated bills to those
// projects (empty: all projects; standard bills are never limited by it).
// `scopes` limits records to those scope keys (empty: all). `keyword`, when
// not blank, must occur in the bill's name, features or work content.
struct BillQuery
{
    QString code;
    QString name;
    QString unit;
    QString features;
    QString workContent;
    int sourceMask = 3;
    QStringList projectIds;
    QStringList scopes;
    QString keyword;
    int offset = 0;
    int limit = 10;
};

struct BillMatch
{
    qint64 id = 0;
    qint64 payload = 0;
    double score = 0.0;
};

// Re-ranking features of one text candidate (see BillReranker).
struct BillFeatures
{
    qint64 id = 0;
    QVector<double> features;
    bool otherPipeSize = false; // see BillReranker::otherPipeSize
};

class BillIndexData;
class RerankWeights;

// In-memory ranking of stored bills: character bigrams of the Chinese text
// (name, features, work content), size tokens, the standard code and its
// 6-digit class, and the unit. Ranking is deterministic; ties go to the bill
// added first.
//
// Candidates come from the rarest query grams first under a fixed work budget;
// the best of them are then scored in full and cut to `poolSize()`, so `total` (the
// "allCount" of a paged reply) never exceeds that depth and every page is a
// slice of the same full ranking.
//
// Thread safety: any number of concurrent query() calls; add()/remove()/build()
// may run at any time. Queries run on an immutable state of the index; build()
// makes the next state beside them (a copy with the changes applied, or a
// compacted rebuild) and swaps it in, so a query never waits for a writer.
class BillIndex
{
public:
    BillIndex();
    ~BillIndex();
    BillIndex(const BillIndex &) = delete;
    BillIndex &operator=(const BillIndex &) = delete;

    // Queued until the next build(); a record with an id already present
    // replaces the old one.
    void add(const BillRecord &record);
    void remove(qint64 id);
    // Makes every queued change searchable: the next state is a copy of
    // the index with the changes, so a build costs about a copy's time
    // however few bills changed (uploads build once per request).
    void build();

    QVector<BillMatch> query(const BillQuery &query, int *total = nullptr) const;

    int size() const;
    static int poolSize();
    // Postings read per query, rarest grams first, before the commonest grams
    // are left to the full scoring of the best candidates.
    void setCandidateBudget(int postings);
    // The best text candidates, with a few that a second text view finds
    // further down, are re-ordered by these weights; empty weights keep the
    // text order.
    void setRerankWeights(const RerankWeights &weights);
    // Features of the candidates re-ordered after the best `count` text
    // candidates: those in text order, then the few that a second text view
    // adds from further down; for learning the weights.
    QVector<BillFeatures> candidateFeatures(const BillQuery &query, int count) const;

private:
    std::shared_ptr<const BillIndexData> current() const;
    void publish(std::shared_ptr<const BillIndexData> next);

    std::mutex m_writer; // one build() at a time
    std::mutex m_pendingMutex;
    std::vector<BillRecord> m_pending;
    std::vector<qint64> m_removals;
    mutable std::mutex m_currentMutex; // held only to copy or replace the pointer
    std::shared_ptr<const BillIndexData> m_current;
};
