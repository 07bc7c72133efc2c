#pragma once
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
    };
    struct Result
    {
        int bills = 0;
        int ceiling = 0;  // bills whose quota set occurs elsewhere in the book
        int top1 = 0;
        int top10 = 0;
        int baselineTop1 = 0;
        int baselineTop10 = 0;
    };

    // Empty list and `error` set when the file cannot be read as a book.
    static QVector<Item> loadBook(const QString &path, QString *error);
    static Result evaluate(const QVector<Item> &items);

private:
    static void runEngine(const QVector<Item> &items, Result &r);
    static void runBaseline(const QVector<Item> &items, Result &r);
};
