#pragma once
#include <QVector>

// Pairwise logistic model over re-ranking features: for every bill, each
// right candidate should score above each wrong one among the same text
// candidates. Bills weigh the same however many pairs they give.
class RerankTrainer
{
public:
    // Candidates of one bill.
    struct Group
    {
        QVector<QVector<double>> rows;
        QVector<bool> right;
    };

    void add(const Group &group);
    // Gradient descent from the text-only weights (1, 0, 0, ...) with an L2
    // pull towards them, so features the data cannot judge stay neutral.
    QVector<double> train(int features, int iterations = 2000, double l2 = 0.001) const;

private:
    struct Pair
    {
        QVector<double> diff;
        double weight;
    };
    QVector<Pair> m_pairs;
    int m_groups = 0;
};
