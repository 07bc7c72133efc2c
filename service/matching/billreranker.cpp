#include "billreranker.h"
#include "billtext.h"

#include <algorithm>

BillReranker::BillReranker(const QString &queryText)
    : m_sizes(SizeParser::parse(queryText))
    , m_comparable(comparable(m_sizes))
    , m_grams(BillText::termsOf(queryText))
{
}

// Sizes with a plastic pipe's outer diameter written as its nominal size, so
// that "DN32" and "De40" compare equal.
QVector<SizeParser::Size> BillReranker::comparable(QVector<SizeParser::Size> sizes)
{
    for (SizeParser::Size &s : sizes)
        if (s.kind == SizeParser::Outer && SizeParser::nominalOf(s.value) > 0)
            s = {SizeParser::Nominal, SizeParser::nominalOf(s.value)};
    return sizes;
}

QVector<double> BillReranker::valuesFor(SizeParser::Kind kind) const
{
    QVector<double> out;
    double largest = 0.0;
    for (const SizeParser::Size &s : m_sizes) {
        if (s.kind == kind)
            out << s.value;
        else if (kind == SizeParser::Outer && s.kind == SizeParser::Nominal && SizeParser::outerOf(s.value) > 0)
            out << SizeParser::outerOf(s.value);
        else if (kind == SizeParser::Nominal && s.kind == SizeParser::Outer)
            out << (SizeParser::nominalOf(s.value) > 0 ? SizeParser::nominalOf(s.value) : s.value);
        if (s.kind == SizeParser::Section)
            largest = std::max(largest, s.value);
    }
    // A cable takes the quota of its largest core.
    if (kind == SizeParser::Section && largest > 0)
        out = {largest};
    return out;
}

bool BillReranker::hasPipeSize() const
{
    for (const SizeParser::Size &s : m_sizes)
        if (s.kind == SizeParser::Nominal || s.kind == SizeParser::Outer)
            return true;
    return false;
}

bool BillReranker::fitsPair(const QuotaBound &b) const
{
    for (const SizeParser::Size &s : m_sizes)
        if ((s.kind == SizeParser::Nominal && (s.value == b.pairNominal || SizeParser::outerOf(s.value) == b.pairOuter))
            || (s.kind == SizeParser::Outer && s.value == b.pairOuter))
            return true;
    return false;
}

int BillReranker::exactSize(const std::vector<Quota> &quotas) const
{
    if (m_sizes.isEmpty())
        return 0;
    bool numbers = false;
    for (const Quota &q : quotas) {
        if (q.bound && q.bound->pairNominal > 0) {
            numbers = true;
            if (fitsPair(*q.bound))
                return 1;
            continue;
        }
        if (!q.numbers)
            continue;
        numbers = numbers || !q.numbers->empty();
        for (const SizeParser::Size &s : m_sizes) {
            const double also = s.kind == SizeParser::Nominal ? SizeParser::outerOf(s.value)
                : s.kind == SizeParser::Outer ? SizeParser::nominalOf(s.value) : -1.0;
            for (double n : *q.numbers)
                if (n == s.value || n == also)
                    return 1;
        }
    }
    return numbers ? -1 : 0;
}

QVector<double> BillReranker::features(double textScore, const std::vector<Quota> &quotas,
                                       const QString &candidateText, QStringList *families) const
{
    int fit = 0, clash = 0;
    double close = 0.0;
    std::vector<uint64_t> names;
    for (const Quota &q : quotas) {
        if (q.grams)
            for (uint64_t g : *q.grams)
                if (!(g >> 63))
                    names.push_back(g);
        if (q.bound && !q.bound->family.isEmpty() && families)
            families->append(q.bound->family);
        // A quota for one pipe size fits exactly or clashes.
        if (q.bound && q.bound->pairNominal > 0 && hasPipeSize()) {
            if (fitsPair(*q.bound)) {
                ++fit;
                close += 1.0;
            } else {
                ++clash;
            }
            continue;
        }
        if (!q.bound || !q.bound->valid)
            continue;
        const QVector<double> values = valuesFor(q.bound->kind);
        if (values.isEmpty())
            continue;
        auto hit = std::find_if(values.begin(), values.end(),
                                [&](double v) { return q.bound->fits(v, q.lower); });
        if (hit == values.end()) {
            ++clash;
            continue;
        }
        ++fit;
        if (!q.bound->atLeast && q.bound->value > q.lower)
            close += (*hit - q.lower) / (q.bound->value - q.lower);
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::vector<uint64_t> shared;
    std::set_intersection(names.begin(), names.end(), m_grams.begin(), m_grams.end(), std::back_inserter(shared));

    int same = 0, other = 0;
    const QVector<SizeParser::Size> theirs = comparable(SizeParser::parse(candidateText));
    for (int k = 0; k < SizeParser::KindCount; ++k) {
        bool mine = false, both = false, equal = false;
        for (const SizeParser::Size &s : m_comparable)
            if (s.kind == k) {
                mine = true;
                equal = equal || theirs.contains(s);
            }
        for (const SizeParser::Size &s : theirs)
            both = both || (mine && s.kind == k);
        same += equal;
        other += both && !equal;
    }
    const int exact = exactSize(quotas);
    const int agree = (fit > 0 && clash == 0) + (exact > 0) + (same > 0);
    const int disagree = (clash > 0) + (exact < 0) + (other > 0);
    return {textScore,
            fit > 0 ? 1.0 : 0.0,
            clash > 0 ? 1.0 : 0.0,
            fit > 0 && clash == 0 ? 1.0 : 0.0,
            fit > 0 ? close / fit : 0.0,
            names.empty() ? 0.0 : double(shared.size()) / double(names.size()),
            same > 0 ? 1.0 : 0.0,
            other > 0 ? 1.0 : 0.0,
            exact > 0 ? 1.0 : 0.0,
            exact < 0 ? 1.0 : 0.0,
            double(agree - disagree) / 3.0};
}

bool BillReranker::otherPipeSize(const std::vector<Quota> &quotas) const
{
    if (!hasPipeSize())
        return false;
    for (const Quota &q : quotas)
        if (q.bound && q.bound->pairNominal > 0 && !fitsPair(*q.bound))
            return true;
    return false;
}

void BillReranker::gate(QVector<QVector<double>> &rows, const QVector<QStringList> &families)
{
    for (int i = 0; i < rows.size(); ++i) {
        bool shared = false;
        for (int j = 0; j < rows.size() && !shared; ++j)
            if (j != i)
                for (const QString &f : families[i])
                    shared = shared || families[j].contains(f);
        if (shared)
            continue;
        // Everything but the text score and the quota-name overlap.
        for (int k = 1; k < rows[i].size(); ++k)
            if (k != 5)
                rows[i][k] = 0.0;
    }
}
