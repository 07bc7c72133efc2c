#pragma once
#include "projectsettingsinfo.h"

#include <QJsonArray>
#include <QMap>
#include <QString>

// The host's global project settings record: the project settings table, the
// check states of the two cloud sources (standard bills, accumulated project
// bills) and the chosen projects, kept per user, server and enterprise.
class GlobalSettingsInfo
{
public:
    ProjectSettingsInfo project;
    bool bzqdChecked = true;
    bool jlqdChecked = true;

    // The key of one stored selection: user id, blank, server token, blank,
    // enterprise id.
    static QString selectionKey(const QString &userId, const QString &token, int qyid);

    // The chosen projects under `key`: an array of {"tid", "xmmc"} objects
    // (empty when none).
    QJsonArray projectSelection(const QString &key) const { return m_selections.value(key); }
    void setProjectSelection(const QString &key, const QJsonArray &projects);
    void removeProjectSelection(const QString &key) { m_selections.remove(key); }
    QMap<QString, QJsonArray> projectSelections() const { return m_selections; }

    bool operator==(const GlobalSettingsInfo &o) const;

private:
    QMap<QString, QJsonArray> m_selections;
};
