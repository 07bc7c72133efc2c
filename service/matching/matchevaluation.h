#pragma once
#include "rerankweights.h"

#include <QString>
#include <QStringList>
#include <QVector>

// Leave-one-out quality of the matcher on a book of confirmed bills (items
// with "bill_text", "bill_name", "quota_ids"): each bill is matched against
// the rest of its book; a hit is a match whose quota set equals the bill's.
class MatchEvaluation
{
public:
    struct Item
    {
        QString name;
        QString text;
        QString code;
        QString unit;
        QStringList quotas; // sorted
        QStringList quotaNames;
    };
    // Confirmed ("authority") items are evaluated; the rest are only counted.
    struct Counts
    {
        int confirmed = 0;
        int unconfirmed = 0;
    };
    struct Result
    {
        int bills = 0;
        int ceiling = 0;  // bills whose quota set occurs elsewhere in the book
        int top1 = 0;
        int top10 = 0;
        int baselineTop1 = 0;
        int baselineTop10 = 0;
        int rerankTop1 = 0; // with the re-ranking weights given
        int rerankTop10 = 0;
        Result &operator+=(const Result &o);
    };

    // Empty list and `error` set when the file cannot be read as a book.
    static QVector<Item> loadBook(const QString &path, QString *error, Counts *counts = nullptr);
    static Result evaluate(const QVector<Item> &items, const RerankWeights &weights = RerankWeights());
    // Weights learned on all books but one, tested on that one, for each
    // book; `all` receives the weights learned on every book.
    static QVector<Result> crossValidate(const QVector<QVector<Item>> &books, RerankWeights *all);

private:
    // The best text candidates of one bill (ids are item numbers) with
    // their re-ranking features, in text order.
    struct Ranked
    {
        QVector<qint64> ids;
        QVector<QVector<double>> rows;
        QVector<bool> otherPipeSize;
    };
    static QVector<Ranked> rankBook(const QVector<Item> &items);
    static Result evaluate(const QVector<Item> &items, const QVector<Ranked> &ranked, const RerankWeights &weights);
    static RerankWeights learn(const QVector<QVector<Item>> &books, const QVector<QVector<Ranked>> &ranked);
    static void fill(class BillIndex &index, const QVector<Item> &items);
    static void count(const QVector<Item> &items, int bill, const QVector<qint64> &ids, int *top1, int *top10);
    static void runBaseline(const QVector<Item> &items, Result &r);
};
