#pragma once
#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>

// Where a shared component reports its failures: under the source name of
// the dialog that owns it and a function of the owner's class. The server
// choice of the wizard's first page, for instance, reports "Qddjyjc" and
// "TInitial::requestServerList". The class is read from the owner's
// meta-object when something is reported, so the most derived class shows.
//
//   m_servers = new CloudServerChoice(combo, GuardSite(kSource, this));
class GuardSite
{
public:
    GuardSite(const char *source, QObject *owner);

    QString source() const { return m_source; }
    QObject *owner() const { return m_owner; }
    // The owner's class with the member of `prettyFunction` (Q_FUNC_INFO).
    QString function(const char *prettyFunction) const;
    // A copy that keeps the owner's class as it is now and never touches the
    // owner again: for reports made on another thread.
    GuardSite detached() const;

private:
    QString ownerClass() const;

    QString m_source;
    QPointer<QObject> m_owner;
    QString m_ownerClass;
};
