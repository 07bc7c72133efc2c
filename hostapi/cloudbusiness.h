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
};
