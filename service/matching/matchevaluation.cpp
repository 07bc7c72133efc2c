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
    Result r;
    r.bills = items.size();
    QHash<QStringList, int> sets;
    for (const Item &it : items)
        ++sets[it.quotas];
    for (const Item &it : items)
        if (sets.value(it.quotas) > 1)
            ++r.ceiling;
    runEngine(items, RerankWeights(), &r.top1, &r.top10);
    runEngine(items, weights, &r.rerankTop1, &r.rerankTop10);
    runBaseline(items, r);
    return r;
}

RerankWeights MatchEvaluation::learn(const QVector<QVector<Item>> &books)
{
    RerankTrainer trainer;
    for (const auto &items : books) {
        BillIndex index;
        fill(index, items);
        for (int i = 0; i < items.size(); ++i) {
            BillQuery q;
            q.name = items[i].name;
            q.features = featuresOf(items[i]);
            RerankTrainer::Group g;
            for (const BillFeatures &f : index.candidateFeatures(q, 21)) {
                if (f.id == i)
                    continue;
                g.rows << f.features;
                g.right << (items[int(f.id)].quotas == items[i].quotas);
            }
            trainer.add(g);
        }
    }
    RerankWeights w;
    w.setWeights(trainer.train(RerankWeights::featureNames().size()));
    return w;
}

QVector<MatchEvaluation::Result> MatchEvaluation::crossValidate(const QVector<QVector<Item>> &books,
                                                                RerankWeights *all)
{
    QVector<Result> out;
    for (int test = 0; test < books.size(); ++test) {
        QVector<QVector<Item>> train = books;
        train.remove(test);
        out << evaluate(books[test], learn(train));
    }
    if (all)
        *all = learn(books);
    return out;
}

void MatchEvaluation::fill(BillIndex &index, const QVector<Item> &items)
{
    for (int i = 0; i < items.size(); ++i) {
        BillRecord rec;
        rec.id = i;
        rec.source = 2;
        rec.name = items[i].name;
        rec.features = featuresOf(items[i]);
        rec.code = items[i].code;
        rec.unit = items[i].unit;
        rec.quotaNames = items[i].quotaNames;
        index.add(rec);
    }
    index.build();
}

// The whole book is indexed once and the bill itself skipped in its own
// ranking, so term statistics include it; the baseline is measured the same way.
void MatchEvaluation::runEngine(const QVector<Item> &items, const RerankWeights &weights, int *top1, int *top10)
{
    BillIndex index;
    index.setRerankWeights(weights);
    fill(index, items);
    for (int i = 0; i < items.size(); ++i) {
        BillQuery q;
        q.name = items[i].name;
        q.features = featuresOf(items[i]);
        q.code = items[i].code;
        q.unit = items[i].unit;
        q.limit = 11;
        int rank = 0;
        const QVector<BillMatch> ms = index.query(q);
        for (const BillMatch &m : ms) {
            if (m.id == i)
                continue;
            if (items[int(m.id)].quotas == items[i].quotas) {
                *top1 += rank == 0;
                *top10 += rank < 10;
                break;
            }
            if (++rank >= 10)
                break;
        }
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
