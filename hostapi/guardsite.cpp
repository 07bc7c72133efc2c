#include "guardsite.h"
#include "functionname.h"

#include <QMetaObject>

GuardSite::GuardSite(const char *source, QObject *owner)
    : m_source(QString::fromUtf8(source)), m_owner(owner)
{
}

QString GuardSite::ownerClass() const
{
    if (!m_ownerClass.isEmpty())
        return m_ownerClass;
    return m_owner ? QString::fromLatin1(m_owner->metaObject()->className()) : QString();
}

QString GuardSite::function(const char *prettyFunction) const
{
    const FunctionName name(prettyFunction);
    const QString owner = ownerClass();
    return owner.isEmpty() ? name.qualified() : owner + QStringLiteral("::") + name.member();
}

GuardSite GuardSite::detached() const
{
    GuardSite copy(nullptr, nullptr);
    copy.m_source = m_source;
    copy.m_ownerClass = ownerClass();
    return copy;
}
