#include "tnextstep.h"

#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/zbasecombox.h>

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

TNextstep::TNextstep(QWidget *parent)
    : zBaseForm(parent)
{
}

void TNextstep::CreateUI()
{
    GUARDED("Qddjyjc", [&] {
        if (m_radQd)
            return;
        m_radQd = new QRadioButton(QStringLiteral("最相似清单"), this);
        m_radQd->setObjectName(QStringLiteral("radQd"));
        m_radQd->setChecked(true);
        m_radXs = new QRadioButton(QStringLiteral("相似"), this);
        m_radXs->setObjectName(QStringLiteral("radXs"));
        auto *group = new QButtonGroup(this);
        group->setExclusive(true);
        group->addButton(m_radQd);
        group->addButton(m_radXs);
        m_comPjz = new zBaseCombox(this);
        m_comPjz->setObjectName(QStringLiteral("comPjz"));
        m_comPjz->setItems({QStringLiteral("3"), QStringLiteral("5")});
        m_comPjz->setCurrentIndex(0);
        m_lblPjz = new QLabel(QStringLiteral("条平均值"), this);
        m_lblPjz->setObjectName(QStringLiteral("lblPjz"));

        const int indent = InterfaceAdaptation::scaled(188);
        auto *first = new QHBoxLayout;
        first->addSpacing(indent);
        first->addWidget(m_radQd);
        first->addStretch();
        auto *second = new QHBoxLayout;
        second->addSpacing(indent);
        second->addWidget(m_radXs);
        second->addWidget(m_comPjz);
        second->addWidget(m_lblPjz);
        second->addStretch();
        auto *page = new QVBoxLayout(this);
        page->addStretch();
        page->addLayout(first);
        page->addSpacing(InterfaceAdaptation::scaled(10));
        page->addLayout(second);
        page->addStretch();
    });
}

bool TNextstep::getradQdChecked() const
{
    return m_radQd && m_radQd->isChecked();
}

bool TNextstep::getradChecked() const
{
    return m_radXs && m_radXs->isChecked();
}

QString TNextstep::getcomPjzChecked() const
{
    if (getradQdChecked())
        return QStringLiteral("1");
    return m_comPjz ? m_comPjz->currentText() : QString();
}
