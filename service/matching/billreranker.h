#pragma once
#include "quotabound.h"
#include "sizeparser.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <cstdint>
#include <vector>

// Features of one text candidate against the bill being priced: how the
// bill's sizes fit the bounds of the candidate's quotas (fit, clash, clean
// fit, closeness to the bound), how much of the quota names the bill's text
// shares, whether a number in the quota names is one of the bill's sizes
// (quotas for one exact size: "公称直径/管外径 20/25mm", "地面扫除口安装 100"),
// and whether the two bills' own texts give the same sizes.
class BillReranker
{
public:
    struct Quota
    {
        const QuotaBound *bound = nullptr; // invalid when the name states no range
        double lower = 0.0;                // the step below the bound in its family
        const std::vector<uint64_t> *grams = nullptr;
        const std::vector<double> *numbers = nullptr; // every number in the name
    };

    explicit BillReranker(const QString &queryText);

    // In the order of RerankWeights::featureNames().
    // `families` receives the families of the candidate's size-bound quotas.
    QVector<double> features(double textScore, const std::vector<Quota> &quotas, const QString &candidateText,
                             QStringList *families = nullptr) const;
    // Quota sizes only decide between candidates whose quotas are of one
    // family: a size fit against another kind of work is no evidence.
    static void gate(QVector<QVector<double>> &rows, const QVector<QStringList> &families);
    // Whether a quota for one pipe size ("公称直径/管外径 20/25") names
    // another size than the bill's: that composition prices another pipe.
    bool otherPipeSize(const std::vector<Quota> &quotas) const;

private:
    // The query's size for a bound of `kind`, or the values to try.
    QVector<double> valuesFor(SizeParser::Kind kind) const;
    // 1 when a quota number is one of the bill's sizes, -1 when the quotas
    // name numbers but none of them, 0 otherwise.
    int exactSize(const std::vector<Quota> &quotas) const;
    // Whether a nominal size or outer diameter of the bill is the pair's.
    bool fitsPair(const QuotaBound &bound) const;
    bool hasPipeSize() const;

    static QVector<SizeParser::Size> comparable(QVector<SizeParser::Size> sizes);

    QVector<SizeParser::Size> m_sizes;
    QVector<SizeParser::Size> m_comparable;
    std::vector<uint64_t> m_grams;
};
