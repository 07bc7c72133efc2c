#pragma once
#include <QJsonValue>
#include <QList>
#include <QPair>
#include <QString>

class GljBean;

// The rules of saving material prices that need no window: the outcome
// summary the host reports and the price-library list of a reply.
class MaterialSaveRules
{
public:
    // total − saved when `total` reads as a non-zero integer, else `saved`.
    static QString failedCount(const QString &total, const QString &saved);
    static QString promptText(const QString &total, const QString &saved);
    // (name "kmms", id "_id") of every library: "data" itself as an array,
    // or its "sjksys" array.
    static QList<QPair<QString, QString>> libraries(const QJsonValue &data);
    // A price worth keeping: a named material (not labour or machine time)
    // with an adjusted price.
    static bool storable(const GljBean &material);
};
