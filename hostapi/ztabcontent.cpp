#include "ztabcontent.h"

#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

zTabContent::zTabContent(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_tabs = new QTabBar(this);
    m_tabs->setObjectName(QStringLiteral("tabBarContent"));
    m_tabs->setExpanding(false);
    m_tabs->setDrawBase(false);
    m_tabs->setVisible(false);
    m_stack = new QStackedWidget(this);
    layout->addWidget(m_tabs);
    layout->addWidget(m_stack, 1);
    connect(m_tabs, &QTabBar::currentChanged, this, &zTabContent::setCurrentIndex);
    connect(m_stack, &QStackedWidget::currentChanged, this, [this](int index) {
        const QSignalBlocker blocker(m_tabs);
        m_tabs->setCurrentIndex(index);
        emit currentChanged(index);
    });
}

int zTabContent::addPage(QWidget *page, const QString &title)
{
    if (!page)
        return -1;
    const QSignalBlocker blocker(m_tabs);
    m_tabs->addTab(title);
    return m_stack->addWidget(page);
}

void zTabContent::removePage(int index)
{
    QWidget *w = page(index);
    if (!w)
        return;
    {
        const QSignalBlocker blocker(m_tabs);
        m_tabs->removeTab(index);
    }
    m_stack->removeWidget(w);
    delete w;
}

int zTabContent::count() const
{
    return m_stack->count();
}

QWidget *zTabContent::page(int index) const
{
    return m_stack->widget(index);
}

int zTabContent::indexOf(QWidget *page) const
{
    return m_stack->indexOf(page);
}

int zTabContent::currentIndex() const
{
    return m_stack->currentIndex();
}

QWidget *zTabContent::currentPage() const
{
    return m_stack->currentWidget();
}

void zTabContent::setCurrentIndex(int index)
{
    if (index >= 0 && index < count())
        m_stack->setCurrentIndex(index);
}

void zTabContent::setCurrentPage(QWidget *page)
{
    setCurrentIndex(indexOf(page));
}

void zTabContent::setTabText(int index, const QString &title)
{
    m_tabs->setTabText(index, title);
}

QString zTabContent::tabText(int index) const
{
    return m_tabs->tabText(index);
}

void zTabContent::setTabBarVisible(bool visible)
{
    m_tabBarVisible = visible;
    m_tabs->setVisible(visible);
}

bool zTabContent::isTabBarVisible() const
{
    return m_tabBarVisible;
}
