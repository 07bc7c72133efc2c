#pragma once
#include <QJsonObject>
#include <QString>

// The current bill-saving attributes (清单保存属性) of a unit project: tax
// mode, pricing file and quota category as indexes, the place code and the
// base date, with the texts they stand for.
class TQDNodeInfo
{
public:
    int jsfsIndex = 0;
    int jswjIndex = 0;
    int delbIndex = 0;
    QString ddCode;
    // "yyyy-MM" of the project time.
    QString dateB;
    QString jsfs;
    QString dd;
    QString qdgf;

    QJsonObject toJson() const;
};
