#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

// Learned weights of the re-ranking features, kept in a small JSON file
// ({"features": [...], "weights": [...]}). A file naming other features than
// this build computes is refused, so stale weights are never applied.
class RerankWeights
{
public:
    static const QStringList &featureNames();
    // The sign each feature's weight is kept to in training (RerankTrainer).
    static const QVector<int> &featureSigns();

    // False with `error` set when the file is missing or damaged; the weights
    // are then left empty and the ranking stays in text order.
    bool load(const QString &path, QString *error);
    // The weights built into the service (learned from the shared books).
    bool loadShipped(QString *error);
    bool fromJson(const QByteArray &json, const QString &origin, QString *error);
    QByteArray toJson(const QString &note) const;

    bool isEmpty() const { return m_weights.isEmpty(); }
    const QVector<double> &weights() const { return m_weights; }
    void setWeights(const QVector<double> &weights) { m_weights = weights; }
    double score(const QVector<double> &features) const;
    // Positions of `rows` by falling score, ties in their given order; the
    // given order when the weights are empty.
    QVector<int> order(const QVector<QVector<double>> &rows) const;
    // `order` with the bills flagged in `last` after the others, each part
    // in its order.
    static QVector<int> lastOf(const QVector<int> &order, const QVector<bool> &last);

private:
    QVector<double> m_weights;
};
