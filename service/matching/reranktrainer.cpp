#include "reranktrainer.h"

#include <algorithm>
#include <cmath>
#include <vector>

void RerankTrainer::add(const Group &group)
{
    if (!group.right.contains(true) || !group.right.contains(false))
        return;
    Flat f;
    for (int r = 0; r < group.rows.size(); ++r) {
        f.values.insert(f.values.end(), group.rows[r].begin(), group.rows[r].end());
        f.right.push_back(group.right[r]);
    }
    m_groups.push_back(std::move(f));
}

void RerankTrainer::setSigns(const QVector<int> &signs)
{
    m_signs = signs;
}

// Gradient of minus the log of the share the right candidates take of each
// bill's softmax, summed over the bills.
void RerankTrainer::addGradient(const std::vector<double> &w, std::vector<double> &grad) const
{
    const size_t n = w.size();
    std::vector<double> share;
    for (const Flat &g : m_groups) {
        const size_t rows = g.right.size();
        share.assign(rows, 0.0);
        double top = -1e300;
        for (size_t r = 0; r < rows; ++r) {
            const double *x = g.values.data() + r * n;
            for (size_t k = 0; k < n; ++k)
                share[r] += w[k] * x[k];
            top = std::max(top, share[r]);
        }
        double all = 0.0, right = 0.0;
        for (size_t r = 0; r < rows; ++r) {
            share[r] = std::exp(share[r] - top);
            all += share[r];
            right += g.right[r] ? share[r] : 0.0;
        }
        for (size_t r = 0; r < rows; ++r) {
            const double coef = share[r] / all - (g.right[r] ? share[r] / right : 0.0);
            const double *x = g.values.data() + r * n;
            for (size_t k = 0; k < n; ++k)
                grad[k] += coef * x[k];
        }
    }
}

QVector<double> RerankTrainer::train(int features, int iterations, double l2) const
{
    QVector<double> prior(features, 0.0);
    if (features > 0)
        prior[0] = 1.0;
    if (m_groups.empty())
        return prior;
    const double rate = 2.0;
    std::vector<double> w(prior.begin(), prior.end());
    std::vector<double> grad(size_t(features), 0.0);
    for (int it = 0; it < iterations; ++it) {
        std::fill(grad.begin(), grad.end(), 0.0);
        addGradient(w, grad);
        for (size_t k = 0; k < w.size(); ++k) {
            w[k] -= rate * (grad[k] / double(m_groups.size()) + l2 * (w[k] - prior[int(k)]));
            if (int(k) < m_signs.size() && m_signs[int(k)] * w[k] < 0.0)
                w[k] = 0.0;
        }
    }
    return QVector<double>(w.begin(), w.end());
}
