#include "billreranker.h"
#include "billtext.h"

#include <algorithm>

BillReranker::BillReranker(const QString &queryText)
    : m_sizes(SizeParser::parse(queryText))
    , m_grams(BillText::termsOf(queryText))
{
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

int BillReranker::exactSize(const std::vector<Quota> &quotas) const
{
    if (m_sizes.isEmpty())
        return 0;
    bool numbers = false;
    for (const Quota &q : quotas) {
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
                                       const QString &candidateText) const
{
    int fit = 0, clash = 0;
    double close = 0.0;
    std::vector<uint64_t> names;
    for (const Quota &q : quotas) {
        if (q.grams)
            for (uint64_t g : *q.grams)
                if (!(g >> 63))
                    names.push_back(g);
        if (!q.bound)
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
    const QVector<SizeParser::Size> theirs = SizeParser::parse(candidateText);
    for (int k = 0; k < SizeParser::KindCount; ++k) {
        bool mine = false, both = false, equal = false;
        for (const SizeParser::Size &s : m_sizes)
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
    return {textScore,
            fit > 0 ? 1.0 : 0.0,
            clash > 0 ? 1.0 : 0.0,
            fit > 0 && clash == 0 ? 1.0 : 0.0,
            fit > 0 ? close / fit : 0.0,
            names.empty() ? 0.0 : double(shared.size()) / double(names.size()),
            same > 0 ? 1.0 : 0.0,
            other > 0 ? 1.0 : 0.0,
            exact > 0 ? 1.0 : 0.0,
            exact < 0 ? 1.0 : 0.0};
}
