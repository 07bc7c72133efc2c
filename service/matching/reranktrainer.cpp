#include "reranktrainer.h"

#include <algorithm>
#include <cmath>
#include <vector>

void RerankTrainer::add(const Group &group)
{
    QVector<QVector<double>> diffs;
    for (int a = 0; a < group.rows.size(); ++a)
        for (int b = 0; b < group.rows.size(); ++b) {
            if (!group.right[a] || group.right[b])
                continue;
            QVector<double> d(group.rows[a].size());
            for (int k = 0; k < d.size(); ++k)
                d[k] = group.rows[a][k] - group.rows[b][k];
            diffs << d;
        }
    if (diffs.isEmpty())
        return;
    ++m_groups;
    for (const auto &d : diffs)
        m_pairs.append({d, 1.0 / diffs.size()});
}

QVector<double> RerankTrainer::train(int features, int iterations, double l2) const
{
    QVector<double> prior(features, 0.0);
    if (features > 0)
        prior[0] = 1.0;
    QVector<double> w = prior;

    if (m_groups == 0)
        return w;
    const double rate = 2.0;
    std::vector<double> grad(static_cast<size_t>(features), 0.0);
    for (int it = 0; it < iterations; ++it) {
        std::fill(grad.begin(), grad.end(), 0.0);
        const double *wk = w.constData();
        for (const Pair &p : m_pairs) {
            const double *d = p.diff.constData();
            double margin = 0.0;
            for (int k = 0; k < features; ++k)
                margin += wk[k] * d[k];
            const double g = -p.weight / (1.0 + std::exp(margin));
            for (int k = 0; k < features; ++k)
                grad[size_t(k)] += g * d[k];
        }
        for (int k = 0; k < features; ++k)
            w[k] -= rate * (grad[size_t(k)] / m_groups + l2 * (w[k] - prior[k]));
    }
    return w;
}
