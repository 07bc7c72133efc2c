#pragma once
#include "billindex.h"
#include "billreranker.h"
#include "quotabound.h"
#include "rerankweights.h"

#include <QHash>

#include <cstdint>
#include <unordered_map>
#include <vector>

// Storage and scoring behind BillIndex; not locked itself.
class BillIndexData
{
public:
    void add(const BillRecord &record) { m_pending.push_back(record); }
    void remove(qint64 id) { m_pendingRemovals.push_back(id); }
    void build();
    QVector<BillMatch> query(const BillQuery &query, int *total) const;
    int size() const { return m_live; }
    void setBudget(size_t postings) { m_budget = postings; }
    void setWeights(const RerankWeights &weights) { m_weights = weights; }
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
        int32_t project = -1;
        int32_t scope = -1;
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

    void index(const BillRecord &record);
    void eraseId(qint64 id);
    void computeNorm(uint32_t doc);
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
    QVector<double> featuresOf(const BillReranker &reranker, const Scored &c) const;
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

    std::vector<BillRecord> m_pending;
    std::vector<qint64> m_pendingRemovals;

    std::vector<Doc> m_docs;
    // Per-bill fields read for every candidate, kept apart from Doc so that
    // candidate scoring touches few cache lines.
    std::vector<uint8_t> m_flags; // source bits, deleted bit
    std::vector<uint32_t> m_codes;
    std::vector<uint16_t> m_unitIds;
    std::vector<float> m_norm;
    std::vector<uint32_t> m_fwd;
    std::vector<char16_t> m_text;
    std::unordered_map<uint64_t, uint32_t> m_gramIds;
    std::vector<std::vector<uint32_t>> m_postings;
    std::vector<float> m_idf2;
    std::unordered_map<uint32_t, std::vector<uint32_t>> m_byCode;
    std::unordered_map<qint64, uint32_t> m_byId;
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
