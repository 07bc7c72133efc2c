#pragma once
#include "servicecontext.h"

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

// A group of method handlers over the service's stores: registers its methods
// in the service's table and builds replies with the helpers here.
class HandlerGroup
{
public:
    explicit HandlerGroup(const ServiceContext &context);
    virtual ~HandlerGroup();
    virtual void registerOn(QHash<QString, MethodHandler> &table) = 0;

protected:
    // The success reply's fields: {"data": data}.
    static QJsonObject ok(const QJsonValue &data = QJsonValue());
    // A library name as typed: trimmed, not empty, at most 50 characters;
    // `kind` ("价表", "清单库") names it in the refusal.
    static QString checkedName(const QString &raw, const QString &kind);

    // Registers `method` of the group under `name`, called with `args` after
    // the request.
    template <typename Group, typename... Params, typename... Args>
    void add(QHash<QString, MethodHandler> &table, const char *name,
             QJsonObject (Group::*method)(const RequestContext &, Params...), Args... args)
    {
        Group *group = static_cast<Group *>(this);
        table.insert(QString::fromLatin1(name),
                     [group, method, args...](const RequestContext &r) { return (group->*method)(r, args...); });
    }

    ServiceContext m_context;
};
