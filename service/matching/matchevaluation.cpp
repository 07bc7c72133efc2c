#include "matchevaluation.h"
#include "billindex.h"
#include "reranktrainer.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

// As many text candidates as the engine re-orders.
constexpr int kReranked = 20;

using Vec = QHash<QString, double>;

QString featuresOf(const MatchEvaluation::Item &it)
{
    return it.text.startsWith(it.name) ? it.text.mid(it.name.size()) : it.text;
}

QHash<QString, int> bigramCounts(const QString &text)
{
    QHash<QString, int> c;
    for (int i = 0; i + 1 < text.size(); ++i)
        ++c[text.mid(i, 2)];
    return c;
}

double dot(const Vec &a, const Vec &b)
{
    const Vec &s = a.size() < b.size() ? a : b;
    const Vec &l = a.size() < b.size() ? b : a;
    double sum = 0.0;
    for (auto it = s.constBegin(); it != s.constEnd(); ++it)
        sum += it.value() * l.value(it.key());
    return sum;
}

} // namespace

MatchEvaluation::Result &MatchEvaluation::Result::operator+=(const Result &o)
{
    bills += o.bills;
    ceiling += o.ceiling;
    top1 += o.top1;
    top10 += o.top10;
    baselineTop1 += o.baselineTop1;
    baselineTop10 += o.baselineTop10;
    rerankTop1 += o.rerankTop1;
    rerankTop10 += o.rerankTop10;
    return *this;
}

QVector<MatchEvaluation::Item> MatchEvaluation::loadBook(const QString &path, QString *error, Counts *counts)
{
    QVector<Item> items;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot open %1: %2").arg(path, f.errorString());
        return items;
    }
    QJsonParseError pe;
    const QJsonDocument doc = QJsonDocument::fromJson(f.readAll(), &pe);
    if (pe.error != QJsonParseError::NoError || !doc.object().value(QStringLiteral("items")).isArray()) {
        *error = QStringLiteral("%1 is not a book file (an object with an \"items\" array)").arg(path);
        return items;
    }
    for (const QJsonValue &v : doc.object().value(QStringLiteral("items")).toArray()) {
        const QJsonObject o = v.toObject();
        const QString layer = o.value(QStringLiteral("layer")).toString(QStringLiteral("authority"));
        if (layer != QLatin1String("authority")) {
            if (counts)
                ++counts->unconfirmed;
            continue;
        }
        if (counts)
            ++counts->confirmed;
        Item it;
        it.text = o.value(QStringLiteral("bill_text")).toString();
        it.name = o.value(QStringLiteral("bill_name")).toString();
        it.code = o.value(QStringLiteral("code")).toString();
        it.unit = o.value(QStringLiteral("unit")).toString();
        for (const QJsonValue &q : o.value(QStringLiteral("quota_ids")).toArray())
            it.quotas << q.toString();
        for (const QJsonValue &q : o.value(QStringLiteral("quota_names")).toArray())
            it.quotaNames << q.toString();
        it.quotas.sort();
        if (it.text.isEmpty())
            it.text = it.name;
        if (!it.text.isEmpty() && !it.quotas.isEmpty())
            items << it;
    }
    return items;
}

MatchEvaluation::Result MatchEvaluation::evaluate(const QVector<Item> &items, const RerankWeights &weights)
{
    return evaluate(items, rankBook(items), weights);
}

MatchEvaluation::Result MatchEvaluation::evaluate(const QVector<Item> &items, const QVector<Ranked> &ranked,
                                                  const RerankWeights &weights)
{
    Result r;
    r.bills = items.size();
    QHash<QStringList, int> sets;
    for (const Item &it : items)
        ++sets[it.quotas];
    for (const Item &it : items)
        if (sets.value(it.quotas) > 1)
            ++r.ceiling;
    for (int i = 0; i < items.size(); ++i) {
        count(items, i, ranked[i].ids, &r.top1, &r.top10);
        QVector<qint64> reordered;
        QVector<int> order = weights.order(ranked[i].rows);
        if (!weights.isEmpty())
            order = RerankWeights::lastOf(order, ranked[i].otherPipeSize);
        for (int k : order)
            reordered << ranked[i].ids[k];
        count(items, i, reordered + ranked[i].ids.mid(reordered.size()), &r.rerankTop1, &r.rerankTop10);
    }
    runBaseline(items, r);
    return r;
}

RerankWeights MatchEvaluation::learn(const QVector<QVector<Item>> &books, const QVector<QVector<Ranked>> &ranked)
{
    RerankTrainer trainer;
    trainer.setSigns(RerankWeights::featureSigns());
    for (int b = 0; b < books.size(); ++b)
        for (int i = 0; i < books[b].size(); ++i) {
            RerankTrainer::Group g;
            const Ranked &r = ranked[b][i];
            for (int k = 0; k < r.rows.size(); ++k) {
                g.rows << r.rows[k];
                g.right << (books[b][int(r.ids[k])].quotas == books[b][i].quotas);
            }
            trainer.add(g);
        }
    RerankWeights w;
    w.setWeights(trainer.train(RerankWeights::featureNames().size()));
    return w;
}

QVector<MatchEvaluation::Result> MatchEvaluation::crossValidate(const QVector<QVector<Item>> &books,
                                                                RerankWeights *all)
{
    QVector<QVector<Ranked>> ranked;
    for (const auto &items : books)
        ranked << rankBook(items);
    QVector<Result> out;
    for (int test = 0; test < books.size(); ++test) {
        QVector<QVector<Item>> trainBooks = books;
        QVector<QVector<Ranked>> trainRanked = ranked;
        trainBooks.remove(test);
        trainRanked.remove(test);
        out << evaluate(books[test], ranked[test], learn(trainBooks, trainRanked));
    }
    if (all)
        *all = learn(books, ranked);
    return out;
}

void MatchEvaluation::fill(BillIndex &index, const QVector<Item> &items)
{
    for (int i = 0; i < items.size(); ++i) {
        BillRecord rec;
        rec.id = i;
        rec.source = 2;
        rec.projectId = QString::number(i);
        rec.name = items[i].name;
        rec.features = featuresOf(items[i]);
        rec.code = items[i].code;
        rec.unit = items[i].unit;
        rec.quotaNames = items[i].quotaNames;
        index.add(rec);
    }
    index.build();
}

// The whole book is indexed once (so every bill counts in term statistics);
// each bill is matched against the others only, as a project of its own left
// out of the query's projects. The features of the text candidates do not
// depend on the weights, so every weighting is judged on the same rows,
// ordered as the engine orders them.
QVector<MatchEvaluation::Ranked> MatchEvaluation::rankBook(const QVector<Item> &items)
{
    BillIndex index;
    fill(index, items);
    QStringList projects;
    for (int i = 0; i < items.size(); ++i)
        projects << QString::number(i);
    QVector<Ranked> out;
    for (int i = 0; i < items.size(); ++i) {
        BillQuery q;
        q.name = items[i].name;
        q.features = featuresOf(items[i]);
        q.code = items[i].code;
        q.unit = items[i].unit;
        q.projectIds = projects;
        q.projectIds.removeAt(i);
        Ranked r;
        for (const BillFeatures &f : index.candidateFeatures(q, kReranked)) {
            r.ids << f.id;
            r.rows << f.features;
            r.otherPipeSize << f.otherPipeSize;
        }
        out << r;
    }
    return out;
}

void MatchEvaluation::count(const QVector<Item> &items, int bill, const QVector<qint64> &ids, int *top1, int *top10)
{
    for (int rank = 0; rank < ids.size() && rank < 10; ++rank)
        if (items[int(ids[rank])].quotas == items[bill].quotas) {
            *top1 += rank == 0;
            *top10 += 1;
            return;
        }
}

void MatchEvaluation::runBaseline(const QVector<Item> &items, Result &r)
{
    QVector<QHash<QString, int>> counts;
    QHash<QString, int> df;
    for (const Item &it : items) {
        counts << bigramCounts(it.text);
        for (auto c = counts.last().constBegin(); c != counts.last().constEnd(); ++c)
            ++df[c.key()];
    }
    const double n = items.size();
    QVector<Vec> vecs;
    for (const auto &c : counts) {
        Vec v;
        double norm = 0.0;
        for (auto it = c.constBegin(); it != c.constEnd(); ++it) {
            const double w = (1.0 + std::log(it.value())) * std::log((n + 1.0) / df.value(it.key()));
            v.insert(it.key(), w);
            norm += w * w;
        }
        norm = std::sqrt(norm);
        for (auto it = v.begin(); it != v.end(); ++it)
            it.value() = norm > 0 ? it.value() / norm : 0.0;
        vecs << v;
    }
    for (int i = 0; i < items.size(); ++i) {
        QVector<QPair<double, int>> ranked;
        for (int j = 0; j < items.size(); ++j)
            if (j != i)
                ranked << qMakePair(-dot(vecs[i], vecs[j]), j);
        std::sort(ranked.begin(), ranked.end());
        for (int k = 0; k < ranked.size() && k < 10; ++k)
            if (items[ranked[k].second].quotas == items[i].quotas) {
                r.baselineTop1 += k == 0;
                r.baselineTop10 += 1;
                break;
            }
    }
}
