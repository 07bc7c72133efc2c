#include "handlergroup.h"
#include "serviceerror.h"

namespace {
constexpr int kMaxName = 50;
}

HandlerGroup::HandlerGroup(const ServiceContext &context)
    : m_context(context)
{
}

HandlerGroup::~HandlerGroup() = default;

QJsonObject HandlerGroup::ok(const QJsonValue &data)
{
    return QJsonObject{{QStringLiteral("data"), data}};
}

QString HandlerGroup::checkedName(const QString &raw, const QString &kind)
{
    const QString name = raw.trimmed();
    if (name.isEmpty())
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("%1名称不能为空").arg(kind));
    if (name.size() > kMaxName)
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("%1名称不能超过%2个字符").arg(kind).arg(kMaxName));
    return name;
}
