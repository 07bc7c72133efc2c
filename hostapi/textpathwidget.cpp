#include "textpathwidget.h"
#include "interfaceadaptation.h"

#include <QListWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

TextPathWidget::TextPathWidget(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("tabPath"));
    m_tabs->setDocumentMode(true);
    m_tabs->tabBar()->setExpanding(false);
    layout->addWidget(m_tabs);
}

void TextPathWidget::addFirstTabData(const QString &title, const QStringList &items)
{
    truncateAfter(-1);
    addTabData(title, items);
}

void TextPathWidget::addTabData(const QString &title, const QStringList &items)
{
    auto *list = new QListWidget(m_tabs);
    list->setViewMode(QListView::IconMode);
    list->setFlow(QListView::LeftToRight);
    list->setWrapping(true);
    list->setResizeMode(QListView::Adjust);
    list->setMovement(QListView::Static);
    list->setSpacing(InterfaceAdaptation::scaled(4));
    list->addItems(items);
    const int tab = m_tabs->addTab(list, title);
    connect(list, &QListWidget::itemClicked, this, [this, list](QListWidgetItem *item) {
        chooseItem(m_tabs->indexOf(list), item->text());
    });
    if (tab > 0)
        m_tabs->setCurrentIndex(tab);
}

QStringList TextPathWidget::getSelectedPath() const
{
    QStringList path;
    for (int tab = 0; tab < m_tabs->count(); ++tab)
        path << m_tabs->tabText(tab);
    return path;
}

int TextPathWidget::tabCount() const
{
    return m_tabs->count();
}

QString TextPathWidget::tabTitle(int tab) const
{
    return m_tabs->tabText(tab);
}

QStringList TextPathWidget::tabItems(int tab) const
{
    QStringList items;
    if (QListWidget *list = listOf(tab))
        for (int row = 0; row < list->count(); ++row)
            items << list->item(row)->text();
    return items;
}

int TextPathWidget::currentTab() const
{
    return m_tabs->currentIndex();
}

void TextPathWidget::setMaxTabCount(int count)
{
    m_maxTabs = qMax(1, count);
}

bool TextPathWidget::chooseItem(int tab, const QString &item)
{
    QListWidget *list = listOf(tab);
    if (!list)
        return false;
    const QList<QListWidgetItem *> found = list->findItems(item, Qt::MatchExactly);
    if (found.isEmpty())
        return false;
    list->setCurrentItem(found.first());
    m_tabs->setTabText(tab, item);
    QStringList next;
    if (tab + 1 < m_maxTabs)
        emit doRequestNextTab(tab, item, this, &next);
    truncateAfter(tab);
    if (!next.isEmpty())
        addTabData(QStringLiteral("类别%1").arg(tab + 1), next);
    emit itemChosen(tab, item, next.isEmpty());
    return true;
}

QListWidget *TextPathWidget::listOf(int tab) const
{
    return qobject_cast<QListWidget *>(m_tabs->widget(tab));
}

void TextPathWidget::truncateAfter(int tab)
{
    while (m_tabs->count() > tab + 1) {
        QWidget *page = m_tabs->widget(m_tabs->count() - 1);
        m_tabs->removeTab(m_tabs->count() - 1);
        page->deleteLater();
    }
}
