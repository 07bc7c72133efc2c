#pragma once
#include "billindex.h"
#include "billreranker.h"
#include "quotabound.h"
#include "rerankweights.h"

#include <QHash>

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <vector>

// Storage and scoring behind BillIndex; not locked itself. Changes come in
// as staged bills, whose text work (normalising, terms) is done beforehand so
// that apply() is quick; the const members only read and may run beside
// queries.
class BillIndexData
{
public:
    // A bill with its text already turned into terms.
    struct Staged
    {
        qint64 id = 0;
        qint64 payload = 0;
        uint8_t source = 1;
        uint32_t code = 0;
        QString unit, scope, project; // keys; empty for none
        QString text;                 // normalised name, features, work content
        std::vector<uint64_t> terms;
        QStringList quotaNames;
    };
    struct Norms
    {
        std::vector<float> norm;
        size_t at = 0;
    };

    static Staged stage(const BillRecord &record);
    void apply(std::vector<Staged> staged, const std::vector<qint64> &removals);
    // Norms of older bills follow the changing idf only once the corpus has
    // grown by a tenth; freshNorms() computes them, install() puts them in.
    bool normsStale() const { return m_docs.size() * 10 > m_normsAt * 11; }
    Norms freshNorms() const;
    void install(Norms norms);
    // Gives back the spare room that growing the arrays left.
    void shrink();
    // Removed bills keep their place until the index is rebuilt from the
    // live ones: worth it once they outnumber those.
    bool wantsCompaction() const { return m_docs.size() - size_t(m_live) > std::max<size_t>(1000, size_t(m_live)); }
    std::vector<Staged> liveDocs() const;

    QVector<BillMatch> query(const BillQuery &query, int *total) const;
    int size() const { return m_live; }
    size_t budget() const { return m_budget; }
    void setBudget(size_t postings) { m_budget = postings; }
    void setWeights(const RerankWeights &weights) { m_weights = weights; }
    const RerankWeights &weights() const { return m_weights; }
    QVector<BillFeatures> candidateFeatures(const BillQuery &query, int count) const;

    static constexpr int kPool = 200;

private:
    struct Doc
    {
        qint64 id = 0;
        qint64 payload = 0;
        uint64_t fwdBegin = 0;
        uint64_t textBegin = 0;
        uint32_t fwdLen = 0;
        uint32_t textLen = 0;
        uint32_t code = 0;
        uint16_t unit = 0;
        uint8_t source = 1;
        bool deleted = false;
    };
    struct Prepared;
    struct Scored
    {
        double score;
        uint32_t doc;
    };

    void index(Staged &record);
    void eraseId(qint64 id);
    void mergeNewIds();
    static constexpr uint32_t kNoDoc = 0xffffffffu;
    float computeNorm(uint32_t doc) const;
    static int intern(QHash<QString, int> &table, const QString &key);

    Prepared prepare(const BillQuery &query) const;
    bool passes(const Prepared &p, uint32_t doc) const;
    double bonus(const Prepared &p, uint32_t doc) const;
    double exactScore(const Prepared &p, uint32_t doc) const;
    bool containsKeyword(const Prepared &p, uint32_t doc) const;
    bool restriction(const Prepared &p, std::vector<uint32_t> &out) const;
    void accumulate(const Prepared &p, const std::vector<uint32_t> *allowed, std::vector<Scored> &out) const;
    void rank(const Prepared &p, std::vector<Scored> &cands) const;
    void rerank(const Prepared &p, std::vector<Scored> &cands) const;
    std::vector<Scored> ranked(const Prepared &p, const BillQuery &q) const;
    // Positions in the text ranking of the candidates the re-ranking orders:
    // the first `n`, then those a second text view adds.
    std::vector<size_t> head(const Prepared &p, const std::vector<Scored> &cands, size_t n) const;
    QString textOf(uint32_t doc) const;
    QVector<double> featuresOf(const BillReranker &reranker, const Scored &c, QStringList *families,
                               bool *otherPipeSize) const;
    // Features of the head's candidates, the quota sizes gated by family;
    // `otherPipeSize` receives which of them price another pipe size.
    QVector<QVector<double>> featureRows(const Prepared &p, const std::vector<Scored> &cands,
                                         const std::vector<size_t> &head, QVector<bool> *otherPipeSize) const;
    void indexQuotas(const QStringList &names);
    void computeFamilySteps();

    // Quotas named in compositions, each name once; bills refer to them.
    struct QuotaInfo
    {
        QuotaBound bound;
        double lower = 0.0;
        std::vector<uint64_t> grams;
        std::vector<double> numbers;
    };

    std::vector<Doc> m_docs;
    // Per-bill fields read for every candidate, kept apart from Doc so that
    // candidate scoring touches few cache lines.
    std::vector<uint8_t> m_flags; // source bits, deleted bit
    std::vector<uint32_t> m_codes;
    std::vector<uint16_t> m_unitIds;
    std::vector<int32_t> m_projectOf; // -1: none
    std::vector<int32_t> m_scopeOf;
    std::vector<float> m_norm;
    std::vector<uint32_t> m_fwd;
    std::vector<char16_t> m_text;
    std::unordered_map<uint64_t, uint32_t> m_gramIds;
    std::vector<std::vector<uint32_t>> m_postings;
    std::vector<float> m_idf2;
    std::unordered_map<uint32_t, std::vector<uint32_t>> m_byCode;
    // Bill ids, sorted, with their docs (kNoDoc once removed): 12 bytes a
    // bill where a hash map takes 40. Ids indexed by the apply() in
    // progress wait in m_newIds and are merged in at its end.
    std::vector<qint64> m_idKeys;
    std::vector<uint32_t> m_idDocs;
    std::unordered_map<qint64, uint32_t> m_newIds;
    std::vector<std::vector<uint32_t>> m_projectDocs;
    QHash<QString, int> m_units;
    QHash<QString, int> m_projects;
    QHash<QString, int> m_scopes;
    std::vector<QuotaInfo> m_quotaInfo;
    QHash<QString, uint32_t> m_quotaIds;
    std::vector<uint32_t> m_quotaStart; // per bill, into m_quotaRefs
    std::vector<uint32_t> m_quotaRefs;
    size_t m_stepsAt = 0;
    RerankWeights m_weights;
    int m_live = 0;
    size_t m_normsAt = 0;
    size_t m_budget = 25000;
};
