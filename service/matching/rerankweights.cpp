#include "rerankweights.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <numeric>
#include <cmath>

// Outside any namespace, as Q_INIT_RESOURCE requires.
static void initMatchingResources()
{
    Q_INIT_RESOURCE(matching);
}

const QStringList &RerankWeights::featureNames()
{
    static const QStringList names = {QStringLiteral("text"),  QStringLiteral("fit"),   QStringLiteral("clash"),
                                      QStringLiteral("clean"), QStringLiteral("close"), QStringLiteral("quotaName"),
                                      QStringLiteral("sameSize"), QStringLiteral("otherSize"),
                                      QStringLiteral("quotaSize"), QStringLiteral("quotaOtherSize"),
                                      QStringLiteral("sizeVote")};
    return names;
}

// Fits, agreeing sizes and shared quota words speak for a candidate; clashes
// and disagreeing sizes against it.
const QVector<int> &RerankWeights::featureSigns()
{
    static const QVector<int> signs = {0, 1, -1, 1, 1, 1, 1, -1, 1, -1, 1};
    return signs;
}

bool RerankWeights::load(const QString &path, QString *error)
{
    m_weights.clear();
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot open the matching weights %1: %2").arg(path, f.errorString());
        return false;
    }
    return fromJson(f.readAll(), path, error);
}

bool RerankWeights::loadShipped(QString *error)
{
    initMatchingResources();
    return load(QStringLiteral(":/matching/rerank-weights.json"), error);
}

bool RerankWeights::fromJson(const QByteArray &json, const QString &origin, QString *error)
{
    m_weights.clear();
    QJsonParseError pe;
    const QJsonObject o = QJsonDocument::fromJson(json, &pe).object();
    const QJsonArray names = o.value(QStringLiteral("features")).toArray();
    const QJsonArray values = o.value(QStringLiteral("weights")).toArray();
    QStringList got;
    for (const QJsonValue &n : names)
        got << n.toString();
    if (pe.error != QJsonParseError::NoError || got != featureNames() || values.size() != got.size()) {
        *error = QStringLiteral("%1 is not a matching weights file for features %2")
                     .arg(origin, featureNames().join(QLatin1Char(',')));
        return false;
    }
    QVector<double> w;
    for (const QJsonValue &v : values) {
        if (!v.isDouble() || !std::isfinite(v.toDouble())) {
            *error = QStringLiteral("%1 has a weight that is not a number").arg(origin);
            return false;
        }
        w << v.toDouble();
    }
    m_weights = w;
    return true;
}

QByteArray RerankWeights::toJson(const QString &note) const
{
    QJsonArray values;
    for (double w : m_weights)
        values.append(std::round(w * 1e6) / 1e6);
    QJsonObject o{{QStringLiteral("features"), QJsonArray::fromStringList(featureNames())},
                  {QStringLiteral("weights"), values},
                  {QStringLiteral("note"), note}};
    return QJsonDocument(o).toJson(QJsonDocument::Indented);
}

double RerankWeights::score(const QVector<double> &features) const
{
    double s = 0.0;
    for (int i = 0; i < m_weights.size() && i < features.size(); ++i)
        s += m_weights[i] * features[i];
    return s;
}

QVector<int> RerankWeights::order(const QVector<QVector<double>> &rows) const
{
    QVector<int> out(rows.size());
    std::iota(out.begin(), out.end(), 0);
    if (m_weights.isEmpty())
        return out;
    QVector<double> scores;
    for (const auto &row : rows)
        scores << score(row);
    std::stable_sort(out.begin(), out.end(), [&](int a, int b) { return scores[a] > scores[b]; });
    return out;
}

QVector<int> RerankWeights::lastOf(const QVector<int> &order, const QVector<bool> &last)
{
    QVector<int> out = order;
    std::stable_partition(out.begin(), out.end(), [&](int k) { return !last[k]; });
    return out;
}
