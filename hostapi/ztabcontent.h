#pragma once
#include <QWidget>

class QStackedWidget;
class QTabBar;

// The host's tab-content container: a stack of pages of which exactly one is
// current (once there is a page), with an optional tab bar above it. Wizards
// hide the bar and switch pages themselves; detail views show it.
// Pages are owned by the container.
class zTabContent : public QWidget
{
    Q_OBJECT
public:
    explicit zTabContent(QWidget *parent = nullptr);

    // Appends `page` (reparented) and returns its index. The first page
    // added becomes current.
    int addPage(QWidget *page, const QString &title = QString());
    // Removes and deletes the page; the current page stays valid.
    void removePage(int index);
    int count() const;
    QWidget *page(int index) const;
    int indexOf(QWidget *page) const;

    int currentIndex() const;
    QWidget *currentPage() const;
    // Ignored for an index outside the pages.
    void setCurrentIndex(int index);
    void setCurrentPage(QWidget *page);

    void setTabText(int index, const QString &title);
    QString tabText(int index) const;
    void setTabBarVisible(bool visible);
    bool isTabBarVisible() const;
    QTabBar *tabBar() const { return m_tabs; }

signals:
    void currentChanged(int index);

private:
    QTabBar *m_tabs = nullptr;
    QStackedWidget *m_stack = nullptr;
    bool m_tabBarVisible = false;
};
