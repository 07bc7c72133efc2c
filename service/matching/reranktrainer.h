#pragma once
#include <QVector>

#include <vector>

// Listwise logistic model over re-ranking features: for every bill, the
// softmax of the candidates' scores should give the right candidates the
// largest share. Unlike pairs of candidates, which are mostly easy ones far
// down the list, the softmax looks at the head of each list. Bills weigh
// the same however many candidates they have.
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
    // Per feature: 1 for a weight kept at or above zero, -1 for one kept at
    // or below, 0 for a free one. A few books cannot tell apart features
    // that say nearly the same thing, and would give one of them the wrong
    // sign; a book of other work then pays for it.
    void setSigns(const QVector<int> &signs);
    // Gradient descent from the text-only weights (1, 0, 0, ...) with an L2
    // pull towards them, so features the data cannot judge stay neutral.
    QVector<double> train(int features, int iterations = 2000, double l2 = 0.001) const;

private:
    // A group's rows one after another, for the training loop.
    struct Flat
    {
        std::vector<double> values;
        std::vector<bool> right;
    };
    void addGradient(const std::vector<double> &w, std::vector<double> &grad) const;

    std::vector<Flat> m_groups;
    QVector<int> m_signs;
};
