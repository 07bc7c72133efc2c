#pragma once
#include <QStringList>
#include <QWidget>

class QListWidget;
class QTabWidget;

// The host's path picker: a row of tabs, one per level of a path. Choosing an
// item on a tab names that tab after the item and asks, through
// doRequestNextTab, for the items of the next level; a non-empty answer
// replaces every tab after the chosen one with one new tab titled "类别N"
// (N = its tab index). The selected path is the titles of all tabs in order,
// placeholder titles of unchosen tabs included.
class TextPathWidget : public QWidget
{
    Q_OBJECT
public:
    explicit TextPathWidget(QWidget *parent = nullptr);

    // Starts a new path: removes every tab, then adds the first one.
    void addFirstTabData(const QString &title, const QStringList &items);
    // Appends one tab.
    void addTabData(const QString &title, const QStringList &items);

    QStringList getSelectedPath() const;

    int tabCount() const;
    QString tabTitle(int tab) const;
    QStringList tabItems(int tab) const;
    int currentTab() const;

    // The most tabs a path may grow to (default 4): on the last allowed tab a
    // choice asks for no further level.
    void setMaxTabCount(int count);
    int maxTabCount() const { return m_maxTabs; }

    // What a click on `item` of tab `tab` does; false when the tab has no such item.
    bool chooseItem(int tab, const QString &item);

signals:
    // The owner fills *nextItems (direct connection) with the level below `item`.
    void doRequestNextTab(int tab, const QString &item, TextPathWidget *widget, QStringList *nextItems);
    // A choice was made; `complete` is true when it has no further level.
    void itemChosen(int tab, const QString &item, bool complete);

private:
    QListWidget *listOf(int tab) const;
    void truncateAfter(int tab);

    QTabWidget *m_tabs = nullptr;
    int m_maxTabs = 4;
};
