#include "storagetargetlayout.h"

#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/zbasecombox.h>

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

QBoxLayout *StorageTargetLayout::build(QWidget *owner, const Texts &texts)
{
    const int gap = InterfaceAdaptation::scaled(10);
    QLabel *object = WidgetFactory::label(texts.objectCaption, QStringLiteral("lblBcdx"), owner);
    QLabel *place = WidgetFactory::label(texts.placeCaption, QStringLiteral("lblBcwz"), owner);
    QLabel *start = WidgetFactory::label(QStringLiteral("当前清单（共"), QStringLiteral("lblDqqd"), owner);
    m_lblNum = WidgetFactory::label(QStringLiteral("0"), QStringLiteral("lblNum"), owner, QStringLiteral("color:#2F7CF6;"));
    QLabel *end = WidgetFactory::label(texts.countEnd, QStringLiteral("lblX"), owner);
    m_radGry = new QRadioButton(QStringLiteral("个人云"), owner);
    m_radGry->setObjectName(QStringLiteral("radGry"));
    m_radQyy = new QRadioButton(QStringLiteral("企业云"), owner);
    m_radQyy->setObjectName(QStringLiteral("radQyy"));
    m_group = new QButtonGroup(owner);
    m_group->addButton(m_radGry);
    m_group->addButton(m_radQyy);
    m_comQy = new zBaseCombox(owner);
    m_comQy->setObjectName(QStringLiteral("comQy"));
    m_comQy->addItem(QStringLiteral("test"));
    m_comQy->setFixedSize(InterfaceAdaptation::scaled(140), InterfaceAdaptation::scaled(26));
    m_comQy->hide();

    auto *count = new QHBoxLayout;
    count->setSpacing(0);
    count->addWidget(start);
    count->addWidget(m_lblNum);
    count->addWidget(end);
    count->addStretch();
    auto *where = new QHBoxLayout;
    where->setSpacing(gap);
    where->addWidget(m_radGry);
    where->addWidget(m_radQyy);
    where->addWidget(m_comQy);
    where->addStretch();
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(gap);
    grid->setVerticalSpacing(InterfaceAdaptation::scaled(16));
    grid->addWidget(object, 0, 0);
    grid->addLayout(count, 0, 1);
    grid->addWidget(place, 1, 0);
    grid->addLayout(where, 1, 1);
    grid->setRowMinimumHeight(1, InterfaceAdaptation::scaled(26));
    auto *rows = new QVBoxLayout;
    rows->setContentsMargins(InterfaceAdaptation::scaled(24), InterfaceAdaptation::scaled(18),
                             InterfaceAdaptation::scaled(24), 0);
    rows->addLayout(grid);
    rows->addStretch();
    return rows;
}

void StorageTargetLayout::setNum(int count)
{
    if (m_lblNum)
        m_lblNum->setText(QString::number(count));
}

int StorageTargetLayout::target() const
{
    return m_radQyy && m_radQyy->isChecked() ? 1 : 0;
}
