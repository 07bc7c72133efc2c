#include "tqdnodeinfo.h"

QJsonObject TQDNodeInfo::toJson() const
{
    return QJsonObject{{QStringLiteral("jsfsIndex"), jsfsIndex}, {QStringLiteral("jswjIndex"), jswjIndex},
                       {QStringLiteral("delbIndex"), delbIndex}, {QStringLiteral("ddCode"), ddCode},
                       {QStringLiteral("dateB"), dateB},         {QStringLiteral("jsfs"), jsfs},
                       {QStringLiteral("dd"), dd},               {QStringLiteral("qdgf"), qdgf}};
}
