#include "billindexdata.h"
#include "bigramprofile.h"
#include "billtext.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace {

// Candidates re-scored in full before the ranking is cut to the pool size.
constexpr size_t kRescored = 1000;
// A restricted candidate set this small is scored exhaustively.
constexpr size_t kExactLimit = 4000;
constexpr double kCodeBonus = 1.0;
constexpr double kClassBonus = 0.25;
constexpr double kUnitPenalty = 0.3;
constexpr uint8_t kDeleted = 0x80;
// Text candidates re-ordered by their quotas' fit; the right bill is nearly
// always among them.
constexpr size_t kReranked = 20;
// Of the next ones, the few a second text view (BigramProfile) likes best
// join them: partners worded otherwise than the bill.
constexpr size_t kWidened = 50;
constexpr size_t kJoining = 5;

struct Scratch
{
    std::vector<float> acc;
    std::vector<uint8_t> mark;
    std::vector<uint32_t> touched;
};

Scratch &scratch(size_t docs)
{
    thread_local Scratch s;
    if (s.acc.size() < docs) {
        s.acc.resize(docs, 0.0f);
        s.mark.resize(docs, 0);
    }
    return s;
}

std::vector<double> numbersIn(const QString &name)
{
    static const QRegularExpression number(QStringLiteral("\\d+(?:\\.\\d+)?"));
    std::vector<double> out;
    auto it = number.globalMatch(name.normalized(QString::NormalizationForm_KC));
    while (it.hasNext())
        out.push_back(it.next().captured().toDouble());
    return out;
}

bool better(double sa, uint32_t da, double sb, uint32_t db)
{
    return sa > sb || (sa == sb && da < db);
}

} // namespace

struct BillIndexData::Prepared
{
    QString text; // the query's raw text, for the re-ranking features
    std::vector<uint32_t> grams; // sorted gram ids known to the index
    double norm = 0.0;
    uint32_t code = 0;
    int unit = 0; // 0 none, -1 unknown unit (matches no stored unit)
    int sourceMask = 3;
    std::vector<int> projects; // sorted
    bool projectFilter = false;
    std::vector<int> scopes; // sorted
    bool scopeFilter = false;
    QString keyword;
    std::vector<uint32_t> keywordGrams;
    bool keywordByGrams = false;
    // A two-character keyword found through its bigram's postings needs no
    // text check: grams are taken from contiguous characters of the text.
    bool keywordIsGram = false;
};

int BillIndexData::intern(QHash<QString, int> &table, const QString &key)
{
    auto it = table.constFind(key);
    if (it != table.constEnd())
        return it.value();
    const int id = table.size();
    table.insert(key, id);
    return id;
}

void BillIndexData::eraseId(qint64 id)
{
    uint32_t doc = kNoDoc;
    const auto fresh = m_newIds.find(id);
    if (fresh != m_newIds.end()) {
        doc = fresh->second;
        m_newIds.erase(fresh);
    } else {
        const auto it = std::lower_bound(m_idKeys.begin(), m_idKeys.end(), id);
        if (it == m_idKeys.end() || *it != id)
            return;
        uint32_t &slot = m_idDocs[size_t(it - m_idKeys.begin())];
        doc = slot;
        slot = kNoDoc;
    }
    if (doc == kNoDoc)
        return;
    Doc &d = m_docs[doc];
    if (!d.deleted) {
        d.deleted = true;
        m_flags[doc] |= kDeleted;
        --m_live;
    }
}

void BillIndexData::mergeNewIds()
{
    std::vector<std::pair<qint64, uint32_t>> added(m_newIds.begin(), m_newIds.end());
    m_newIds.clear();
    std::sort(added.begin(), added.end());
    std::vector<qint64> keys;
    std::vector<uint32_t> docs;
    keys.reserve(m_idKeys.size() + added.size());
    docs.reserve(m_idKeys.size() + added.size());
    // An id indexed again had its old entry removed (kNoDoc) by eraseId.
    size_t i = 0, j = 0;
    while (i < m_idKeys.size() || j < added.size()) {
        if (j == added.size() || (i < m_idKeys.size() && m_idKeys[i] < added[j].first)) {
            if (m_idDocs[i] != kNoDoc) {
                keys.push_back(m_idKeys[i]);
                docs.push_back(m_idDocs[i]);
            }
            ++i;
        } else {
            keys.push_back(added[j].first);
            docs.push_back(added[j].second);
            ++j;
        }
    }
    m_idKeys.swap(keys);
    m_idDocs.swap(docs);
}

BillIndexData::Staged BillIndexData::stage(const BillRecord &r)
{
    Staged s;
    s.id = r.id;
    s.payload = r.payload;
    s.source = uint8_t(r.source == 2 ? 2 : 1);
    s.code = BillText::codeKey(r.code);
    s.unit = BillText::unitKey(r.unit);
    s.scope = r.scope;
    s.project = r.projectId;
    s.text = BillText::normalise(r.name + QLatin1Char('\n') + r.features + QLatin1Char('\n') + r.workContent);
    s.terms = BillText::terms(BillText::stripLabels(s.text));
    s.quotaNames = r.quotaNames;
    return s;
}

void BillIndexData::index(Staged &r)
{
    eraseId(r.id);
    const uint32_t docNo = uint32_t(m_docs.size());
    Doc d;
    d.id = r.id;
    d.payload = r.payload;
    d.source = r.source;
    d.code = r.code;
    d.unit = r.unit.isEmpty() ? 0 : uint16_t(intern(m_units, r.unit) + 1);
    m_scopeOf.push_back(r.scope.isEmpty() ? -1 : intern(m_scopes, r.scope));
    m_projectOf.push_back(r.project.isEmpty() ? -1 : intern(m_projects, r.project));
    if (m_projectOf.back() >= 0) {
        const size_t project = size_t(m_projectOf.back());
        if (project >= m_projectDocs.size())
            m_projectDocs.resize(project + 1);
        m_projectDocs[project].push_back(docNo);
    }

    d.textBegin = m_text.size();
    d.textLen = uint32_t(r.text.size());
    const char16_t *chars = reinterpret_cast<const char16_t *>(r.text.utf16());
    m_text.insert(m_text.end(), chars, chars + r.text.size());
    r.text.clear();

    std::vector<uint32_t> ids;
    ids.reserve(r.terms.size());
    for (uint64_t key : r.terms) {
        auto ins = m_gramIds.emplace(key, uint32_t(m_postings.size()));
        if (ins.second)
            m_postings.emplace_back();
        ids.push_back(ins.first->second);
        m_postings[ins.first->second].push_back(docNo);
    }
    std::sort(ids.begin(), ids.end());
    d.fwdBegin = m_fwd.size();
    d.fwdLen = uint32_t(ids.size());
    m_fwd.insert(m_fwd.end(), ids.begin(), ids.end());
    m_quotaStart.push_back(uint32_t(m_quotaRefs.size()));
    indexQuotas(r.quotaNames);

    if (d.code)
        m_byCode[d.code].push_back(docNo);
    m_newIds[r.id] = docNo;
    m_docs.push_back(d);
    m_flags.push_back(d.source);
    m_codes.push_back(d.code);
    m_unitIds.push_back(d.unit);
    ++m_live;
}

float BillIndexData::computeNorm(uint32_t doc) const
{
    const Doc &d = m_docs[doc];
    double sum = 0.0;
    for (uint32_t i = 0; i < d.fwdLen; ++i)
        sum += m_idf2[m_fwd[d.fwdBegin + i]];
    return float(std::sqrt(sum));
}

void BillIndexData::apply(std::vector<Staged> staged, const std::vector<qint64> &removals)
{
    for (qint64 id : removals)
        eraseId(id);
    const size_t before = m_docs.size();
    for (Staged &r : staged)
        index(r);
    mergeNewIds();
    if (m_quotaInfo.size() != m_stepsAt)
        computeFamilySteps();

    const double n = double(m_docs.size()) + 1.0;
    m_idf2.resize(m_postings.size());
    for (size_t g = 0; g < m_postings.size(); ++g) {
        const double idf = std::log(n / double(m_postings[g].size()));
        m_idf2[g] = float(idf * idf);
    }
    // New bills get their norms now; older ones when freshNorms() runs.
    m_norm.resize(m_docs.size());
    for (size_t i = before; i < m_docs.size(); ++i)
        m_norm[i] = computeNorm(uint32_t(i));
}

BillIndexData::Norms BillIndexData::freshNorms() const
{
    Norms n;
    n.at = m_docs.size();
    n.norm.resize(n.at);
    for (size_t i = 0; i < n.at; ++i)
        n.norm[i] = computeNorm(uint32_t(i));
    return n;
}

void BillIndexData::install(Norms norms)
{
    // Bills applied meanwhile keep the norms apply() gave them.
    std::copy(norms.norm.begin(), norms.norm.end(), m_norm.begin());
    m_normsAt = norms.at;
}

void BillIndexData::shrink()
{
    // A copy allocates every array at its size, one after another; the
    // grown originals, interleaved with the build's temporaries, go at once.
    BillIndexData compact(*this);
    *this = std::move(compact);
}

std::vector<BillIndexData::Staged> BillIndexData::liveDocs() const
{
    auto keys = [](const QHash<QString, int> &table) {
        std::vector<QString> byId(size_t(table.size()));
        for (auto it = table.constBegin(); it != table.constEnd(); ++it)
            byId[size_t(it.value())] = it.key();
        return byId;
    };
    const std::vector<QString> units = keys(m_units), scopes = keys(m_scopes), projects = keys(m_projects);
    std::vector<QString> quotaNames(m_quotaInfo.size());
    for (auto it = m_quotaIds.constBegin(); it != m_quotaIds.constEnd(); ++it)
        quotaNames[it.value()] = it.key();
    std::vector<Staged> live;
    live.reserve(size_t(m_live));
    for (uint32_t docNo = 0; docNo < m_docs.size(); ++docNo) {
        const Doc &d = m_docs[docNo];
        if (d.deleted)
            continue;
        Staged s;
        s.id = d.id;
        s.payload = d.payload;
        s.source = d.source;
        s.code = d.code;
        s.unit = d.unit ? units[d.unit - 1] : QString();
        s.scope = m_scopeOf[docNo] >= 0 ? scopes[size_t(m_scopeOf[docNo])] : QString();
        s.project = m_projectOf[docNo] >= 0 ? projects[size_t(m_projectOf[docNo])] : QString();
        s.text = QString::fromUtf16(m_text.data() + d.textBegin, int(d.textLen));
        s.terms = BillText::terms(BillText::stripLabels(s.text));
        const uint32_t to = docNo + 1 < m_quotaStart.size() ? m_quotaStart[docNo + 1] : uint32_t(m_quotaRefs.size());
        for (uint32_t i = m_quotaStart[docNo]; i < to; ++i)
            s.quotaNames << quotaNames[m_quotaRefs[i]];
        live.push_back(std::move(s));
    }
    return live;
}

BillIndexData::Prepared BillIndexData::prepare(const BillQuery &q) const
{
    Prepared p;
    p.text = q.name + QLatin1Char('\n') + q.features + QLatin1Char('\n') + q.workContent;
    const QString text = BillText::stripLabels(BillText::normalise(p.text));
    double norm2 = 0.0;
    for (uint64_t key : BillText::terms(text)) {
        auto it = m_gramIds.find(key);
        if (it == m_gramIds.end())
            continue;
        p.grams.push_back(it->second);
        norm2 += m_idf2[it->second];
    }
    std::sort(p.grams.begin(), p.grams.end());
    p.norm = std::sqrt(norm2);
    p.code = BillText::codeKey(q.code);
    const QString unit = BillText::unitKey(q.unit);
    if (!unit.isEmpty())
        p.unit = m_units.contains(unit) ? m_units.value(unit) + 1 : -1;
    p.sourceMask = q.sourceMask;
    for (const QString &id : q.projectIds) {
        p.projectFilter = true;
        if (m_projects.contains(id))
            p.projects.push_back(m_projects.value(id));
    }
    for (const QString &s : q.scopes) {
        p.scopeFilter = true;
        if (m_scopes.contains(s))
            p.scopes.push_back(m_scopes.value(s));
    }
    std::sort(p.projects.begin(), p.projects.end());
    p.projects.erase(std::unique(p.projects.begin(), p.projects.end()), p.projects.end());
    std::sort(p.scopes.begin(), p.scopes.end());
    p.keyword = BillText::normalise(q.keyword);
    if (p.keyword.size() >= 2) {
        p.keywordByGrams = true;
        for (uint64_t key : BillText::terms(p.keyword)) {
            if (key >> 63)
                continue;
            auto it = m_gramIds.find(key);
            if (it == m_gramIds.end()) {
                p.keywordByGrams = false;
                break;
            }
            p.keywordGrams.push_back(it->second);
        }
        if (p.keywordGrams.empty())
            p.keywordByGrams = false;
        p.keywordIsGram = p.keywordByGrams && p.keyword.size() == 2;
    }
    return p;
}

bool BillIndexData::passes(const Prepared &p, uint32_t doc) const
{
    const uint8_t flags = m_flags[doc];
    if ((flags & kDeleted) || !(p.sourceMask & flags))
        return false;
    if (!p.projectFilter && !p.scopeFilter && p.keyword.isEmpty())
        return true;
    if (p.projectFilter && flags == 2
        && !std::binary_search(p.projects.begin(), p.projects.end(), m_projectOf[doc]))
        return false;
    if (p.scopeFilter && !std::binary_search(p.scopes.begin(), p.scopes.end(), m_scopeOf[doc]))
        return false;
    return p.keyword.isEmpty() || p.keywordIsGram || containsKeyword(p, doc);
}

bool BillIndexData::containsKeyword(const Prepared &p, uint32_t doc) const
{
    const Doc &d = m_docs[doc];
    const char16_t *text = m_text.data() + d.textBegin;
    const char16_t *kw = reinterpret_cast<const char16_t *>(p.keyword.utf16());
    return std::search(text, text + d.textLen, kw, kw + p.keyword.size()) != text + d.textLen;
}

double BillIndexData::bonus(const Prepared &p, uint32_t doc) const
{
    double b = 0.0;
    if (p.code) {
        const uint32_t code = m_codes[doc];
        if (code == p.code)
            b += kCodeBonus;
        if (code / 1000 == p.code / 1000)
            b += kClassBonus;
    }
    const int unit = m_unitIds[doc];
    if (p.unit != 0 && unit != 0 && unit != p.unit)
        b -= kUnitPenalty;
    return b;
}

double BillIndexData::exactScore(const Prepared &p, uint32_t doc) const
{
    const Doc &d = m_docs[doc];
    double dot = 0.0;
    const uint32_t *a = p.grams.data(), *ae = a + p.grams.size();
    const uint32_t *b = m_fwd.data() + d.fwdBegin, *be = b + d.fwdLen;
    while (a != ae && b != be) {
        if (*a < *b)
            ++a;
        else if (*b < *a)
            ++b;
        else {
            dot += m_idf2[*a];
            ++a;
            ++b;
        }
    }
    const double denom = p.norm * double(m_norm[doc]);
    return (denom > 0.0 ? dot / denom : 0.0) + bonus(p, doc);
}

// Bills the keyword or an accumulated-only project choice allow, when that is
// narrower than the whole index.
bool BillIndexData::restriction(const Prepared &p, std::vector<uint32_t> &out) const
{
    if (!p.keyword.isEmpty()) {
        if (!p.keywordByGrams) {
            for (uint32_t i = 0; i < m_docs.size(); ++i)
                if (passes(p, i))
                    out.push_back(i);
            return true;
        }
        std::vector<uint32_t> order = p.keywordGrams;
        std::sort(order.begin(), order.end(),
                  [this](uint32_t a, uint32_t b) { return m_postings[a].size() < m_postings[b].size(); });
        std::vector<uint32_t> cur = m_postings[order.front()], next;
        for (size_t k = 1; k < order.size() && !cur.empty(); ++k) {
            const auto &list = m_postings[order[k]];
            next.clear();
            std::set_intersection(cur.begin(), cur.end(), list.begin(), list.end(), std::back_inserter(next));
            cur.swap(next);
        }
        for (uint32_t d : cur)
            if (passes(p, d))
                out.push_back(d);
        return true;
    }
    if (p.projectFilter && !(p.sourceMask & 1)) {
        for (int proj : p.projects)
            for (uint32_t d : m_projectDocs[size_t(proj)])
                if (passes(p, d))
                    out.push_back(d);
        std::sort(out.begin(), out.end());
        return true;
    }
    return false;
}

void BillIndexData::accumulate(const Prepared &p, const std::vector<uint32_t> *allowed, std::vector<Scored> &out) const
{
    Scratch &s = scratch(m_docs.size());
    if (allowed)
        for (uint32_t d : *allowed)
            s.mark[d] = 1;
    std::vector<uint32_t> order = p.grams;
    std::sort(order.begin(), order.end(), [this](uint32_t a, uint32_t b) {
        const size_t la = m_postings[a].size(), lb = m_postings[b].size();
        return la < lb || (la == lb && a < b);
    });
    size_t spent = 0;
    s.touched.clear();
    for (uint32_t g : order) {
        const auto &list = m_postings[g];
        if (spent > 0 && spent + list.size() > m_budget)
            break;
        const size_t take = std::min(list.size(), m_budget);
        const float w = m_idf2[g];
        for (size_t i = 0; i < take; ++i) {
            const uint32_t d = list[i];
            if (allowed && !s.mark[d])
                continue;
            if (s.acc[d] == 0.0f)
                s.touched.push_back(d);
            s.acc[d] += w;
        }
        spent += take;
    }
    if (p.code) {
        auto it = m_byCode.find(p.code);
        if (it != m_byCode.end())
            for (uint32_t d : it->second)
                if ((!allowed || s.mark[d]) && s.acc[d] == 0.0f) {
                    s.touched.push_back(d);
                    s.acc[d] = 1e-30f;
                }
    }
    for (uint32_t d : s.touched) {
        if (!allowed && !passes(p, d)) {
            s.acc[d] = 0.0f;
            continue;
        }
        const double denom = p.norm * double(m_norm[d]);
        out.push_back({(denom > 0.0 ? s.acc[d] / denom : 0.0) + bonus(p, d), d});
        s.acc[d] = 0.0f;
    }
    if (allowed)
        for (uint32_t d : *allowed)
            s.mark[d] = 0;
}

void BillIndexData::rank(const Prepared &p, std::vector<Scored> &cands) const
{
    auto cmp = [](const Scored &a, const Scored &b) { return better(a.score, a.doc, b.score, b.doc); };
    if (cands.size() > kRescored) {
        std::nth_element(cands.begin(), cands.begin() + kRescored, cands.end(), cmp);
        cands.resize(kRescored);
    }
    for (Scored &c : cands)
        c.score = exactScore(p, c.doc);
    std::sort(cands.begin(), cands.end(), cmp);
    if (cands.size() > size_t(kPool))
        cands.resize(kPool);
}

std::vector<BillIndexData::Scored> BillIndexData::ranked(const Prepared &p, const BillQuery &q) const
{
    std::vector<Scored> cands;
    std::vector<uint32_t> allowed;
    const bool restricted = q.sourceMask != 0 && restriction(p, allowed);
    if (q.sourceMask == 0) {
        // nothing selected: nothing matches
    } else if (restricted && allowed.size() <= kExactLimit) {
        for (uint32_t d : allowed)
            cands.push_back({exactScore(p, d), d});
    } else {
        accumulate(p, restricted ? &allowed : nullptr, cands);
    }
    rank(p, cands);
    return cands;
}

QVector<BillMatch> BillIndexData::query(const BillQuery &q, int *total) const
{
    const Prepared p = prepare(q);
    std::vector<Scored> cands = ranked(p, q);
    if (!m_weights.isEmpty())
        rerank(p, cands);
    if (total)
        *total = int(cands.size());
    QVector<BillMatch> out;
    const int from = std::max(0, q.offset);
    const int to = std::min(int(cands.size()), from + std::max(0, q.limit));
    for (int i = from; i < to; ++i) {
        const Doc &d = m_docs[cands[size_t(i)].doc];
        out.push_back({d.id, d.payload, cands[size_t(i)].score});
    }
    return out;
}

void BillIndexData::indexQuotas(const QStringList &names)
{
    for (const QString &name : names) {
        auto it = m_quotaIds.constFind(name);
        if (it == m_quotaIds.constEnd()) {
            QuotaInfo info;
            info.bound = QuotaBound::parse(name);
            info.grams = BillText::termsOf(name);
            info.numbers = numbersIn(name);
            it = m_quotaIds.insert(name, uint32_t(m_quotaInfo.size()));
            m_quotaInfo.push_back(std::move(info));
        }
        m_quotaRefs.push_back(it.value());
    }
}

// The step below each bound: the next smaller bound among the quotas of the
// same family seen in the store.
void BillIndexData::computeFamilySteps()
{
    QHash<QString, std::vector<double>> families;
    for (const QuotaInfo &q : m_quotaInfo)
        if (q.bound.valid && !q.bound.atLeast)
            families[q.bound.family].push_back(q.bound.value);
    for (QuotaInfo &q : m_quotaInfo) {
        q.lower = 0.0;
        if (!q.bound.valid || q.bound.atLeast)
            continue;
        for (double v : families.value(q.bound.family))
            if (v < q.bound.value && v > q.lower)
                q.lower = v;
    }
    m_stepsAt = m_quotaInfo.size();
}

QVector<double> BillIndexData::featuresOf(const BillReranker &reranker, const Scored &c, QStringList *families,
                                          bool *otherPipeSize) const
{
    const uint32_t from = m_quotaStart[c.doc];
    const uint32_t to = c.doc + 1 < m_quotaStart.size() ? m_quotaStart[c.doc + 1] : uint32_t(m_quotaRefs.size());
    std::vector<BillReranker::Quota> quotas;
    for (uint32_t i = from; i < to; ++i) {
        const QuotaInfo &info = m_quotaInfo[m_quotaRefs[i]];
        quotas.push_back({&info.bound, info.lower, &info.grams, &info.numbers});
    }
    *otherPipeSize = reranker.otherPipeSize(quotas);
    return reranker.features(c.score, quotas, textOf(c.doc), families);
}

QString BillIndexData::textOf(uint32_t doc) const
{
    const Doc &d = m_docs[doc];
    return QString::fromUtf16(m_text.data() + d.textBegin, int(d.textLen));
}

std::vector<size_t> BillIndexData::head(const Prepared &p, const std::vector<Scored> &cands, size_t n) const
{
    std::vector<size_t> out;
    for (size_t i = 0; i < n && i < cands.size(); ++i)
        out.push_back(i);
    if (cands.size() <= n)
        return out;
    const BigramProfile query(BillText::normalise(p.text));
    std::vector<std::pair<double, size_t>> later;
    for (size_t i = n; i < cands.size() && i < kWidened; ++i)
        later.push_back({-query.cosine(m_text.data() + m_docs[cands[i].doc].textBegin,
                                       int(m_docs[cands[i].doc].textLen)), i});
    const size_t joining = std::min(later.size(), kJoining);
    std::partial_sort(later.begin(), later.begin() + long(joining), later.end());
    for (size_t k = 0; k < joining; ++k)
        out.push_back(later[k].second);
    return out;
}

QVector<QVector<double>> BillIndexData::featureRows(const Prepared &p, const std::vector<Scored> &cands,
                                                    const std::vector<size_t> &head,
                                                    QVector<bool> *otherPipeSize) const
{
    const BillReranker reranker(p.text);
    QVector<QVector<double>> rows;
    QVector<QStringList> families(int(head.size()));
    otherPipeSize->fill(false, families.size());
    for (int i = 0; i < families.size(); ++i)
        rows.push_back(featuresOf(reranker, cands[head[size_t(i)]], &families[i], &(*otherPipeSize)[i]));
    BillReranker::gate(rows, families);
    return rows;
}

void BillIndexData::rerank(const Prepared &p, std::vector<Scored> &cands) const
{
    if (std::min(cands.size(), kReranked) < 2)
        return;
    const std::vector<size_t> positions = head(p, cands, kReranked);
    std::vector<Scored> out;
    out.reserve(cands.size());
    std::vector<bool> taken(cands.size(), false);
    QVector<bool> otherPipeSize;
    const QVector<QVector<double>> rows = featureRows(p, cands, positions, &otherPipeSize);
    const QVector<int> order = RerankWeights::lastOf(m_weights.order(rows), otherPipeSize);
    for (int k : order) {
        out.push_back(cands[positions[size_t(k)]]);
        taken[positions[size_t(k)]] = true;
    }
    for (size_t i = 0; i < cands.size(); ++i)
        if (!taken[i])
            out.push_back(cands[i]);
    cands.swap(out);
}

QVector<BillFeatures> BillIndexData::candidateFeatures(const BillQuery &q, int count) const
{
    const Prepared p = prepare(q);
    const std::vector<Scored> cands = ranked(p, q);
    const std::vector<size_t> positions = head(p, cands, size_t(std::max(0, count)));
    QVector<bool> otherPipeSize;
    const QVector<QVector<double>> rows = featureRows(p, cands, positions, &otherPipeSize);
    QVector<BillFeatures> out;
    for (int i = 0; i < rows.size(); ++i)
        out.push_back({m_docs[cands[positions[size_t(i)]].doc].id, rows[i], otherPipeSize[i]});
    return out;
}
