#pragma once
#include "ltdinfo.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

class BaseDataItem;
class CloudParams;

// Host convenience calls around cloud requests. Later features add theirs here.
class CloudBusiness
{
public:
    // Fills `list` with the host's full server list (refreshed from the cloud).
    static bool requestServerList(QList<LtdInfo *> &list, QString filter);
    // True when the list holds an enterprise server.
    static bool hasPriServer(QList<LtdInfo *> &list);

    // Feature matches of `item` from standard (sourceMask bit 1) and
    // accumulated (bit 2) bills, one page as `params` asks. `reply` is the
    // whole cloud reply ("code", "msg", "allCount", "pageRowCount", "data").
    // False when unanswered. Safe on a worker thread.
    static bool MatchQdtz(BaseDataItem *item, CloudParams params, LtdInfo *server, QJsonObject &reply,
                          int sourceMask, QStringList projectIds);
    // Project information of the cloud bill `id` ("xmmc", "qdbh", "dwmc",
    // "dxmc", "qdmc" in "data"). False when unanswered or refused.
    static bool RequestGcslData(LtdInfo *server, QString &id, QJsonObject &reply);
    // Cloud unit prices of the `matchNum` bills most like `item`, each in the
    // string form CloudZjBean parses, best first. False when unanswered or
    // refused; `error` then holds the cloud's message (empty when unanswered).
    static bool RequestSimilarBillPrices(BaseDataItem *item, LtdInfo *server, int matchNum, QStringList &bills,
                                         QString *error = nullptr);
    // The bills of a "getsimilarbillprices" reply as RequestSimilarBillPrices
    // gives them; `bills` and `error` must come in cleared.
    static bool TakeSimilarBillPrices(const QJsonObject &reply, QStringList &bills, QString *error = nullptr);
    // The specialty of `bill` in the information quota books: the first two
    // digits of its national bill code (the measure code for a measure bill);
    // empty for a self-made bill or a code that is no such number.
    static QString GetXxDeZyCode(const BaseDataItem *bill);
};
