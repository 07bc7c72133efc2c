#pragma once
#include <hostapi/cloudznytzbean.h>

#include <QJsonObject>
#include <QList>

// The cloud feature reply as the guide reads it: the page count, the results
// of the page (standard and project matches interleaved) and their numbers.
class FeatureCloudReply
{
public:
    static constexpr int PageSize = 10;

    // ceil("allCount" / "pageRowCount"); 0 when either is missing or not
    // positive, and never so many that a result number overflows.
    static int pageCount(const QJsonObject &reply);
    // "data"."bzqds" and "data"."jlqds" taken in turn, standard first, the
    // rest of the longer list after the shorter one ends.
    static QList<CloudZnytzBean> results(const QJsonObject &reply);
    // The number shown for the result at header row `row` (0, 2, 4, ...) and
    // `column` on `page` (from 1).
    static int number(int page, int row, int column);
    // The index in the page's results of the header at (row, column).
    static int resultIndex(int row, int column) { return row + column; }
};
