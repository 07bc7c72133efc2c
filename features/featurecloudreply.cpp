#include "featurecloudreply.h"

#include <QJsonArray>

#include <algorithm>
#include <limits>

int FeatureCloudReply::pageCount(const QJsonObject &reply)
{
    const int all = reply.value(QStringLiteral("allCount")).toInt();
    const int perPage = reply.value(QStringLiteral("pageRowCount")).toInt();
    if (perPage <= 0 || all <= 0)
        return 0;
    // The cloud's counts are untrusted: in 64 bits the sum cannot overflow,
    // and the last page's result numbers must still fit an int.
    const qint64 pages = (qint64(all) + perPage - 1) / perPage;
    return int(std::min<qint64>(pages, std::numeric_limits<int>::max() / PageSize));
}

QList<CloudZnytzBean> FeatureCloudReply::results(const QJsonObject &reply)
{
    const QJsonObject data = reply.value(QStringLiteral("data")).toObject();
    const QJsonArray standard = data.value(QStringLiteral("bzqds")).toArray();
    const QJsonArray projects = data.value(QStringLiteral("jlqds")).toArray();
    QList<CloudZnytzBean> list;
    const int longer = std::max(standard.size(), projects.size());
    for (int i = 0; i < longer; ++i) {
        if (i < standard.size())
            list << CloudZnytzBean::fromJson(standard.at(i).toObject(), true);
        if (i < projects.size())
            list << CloudZnytzBean::fromJson(projects.at(i).toObject(), false);
    }
    return list;
}

int FeatureCloudReply::number(int page, int row, int column)
{
    return column == 0 ? page * PageSize - 9 + row : page * PageSize - 8 + row;
}
