#pragma once
#include <QJsonArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

// The accumulated projects chosen in the project filter: ids ("tid") and names
// ("xmmc") in the order chosen, kept in the global settings under a key per
// user, server and enterprise.
class CloudProjectSelection
{
public:
    QStringList ids() const { return m_ids; }
    QStringList names() const { return m_names; }
    bool isEmpty() const { return m_ids.isEmpty(); }
    void clear();

    // Replaces the selection (never appends to it); entries without "tid" are
    // skipped.
    void setProjects(const QList<QMap<QString, QVariant>> &projects);
    // The selection as the project filter takes it back (one text per project).
    QStringList choiceTexts() const;

    QJsonArray toJson() const;
    static CloudProjectSelection fromJson(const QJsonArray &projects);

    static CloudProjectSelection read(const QString &key);
    // An empty selection removes the key.
    void write(const QString &key) const;

private:
    void append(const QString &id, const QString &name);

    QStringList m_ids;
    QStringList m_names;
};
