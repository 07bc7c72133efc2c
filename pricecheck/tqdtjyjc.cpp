#include "tqdtjyjc.h"
#include "tinitial.h"
#include "tnextstep.h"

#include <cloud/cloudserverchoice.h>
#include <cloud/moduletitle.h>

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/wizardsteps.h>
#include <hostapi/ztabcontent.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "Qddjyjc";

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}
}

TQdtjyjc::TQdtjyjc(QWidget *parent)
    : zTitleModal(parent)
{
    setScaledFixedSize(600, 430);
    OnlyClose();
    SetCaption(veloraModuleTitle());
}

TInitial *TQdtjyjc::initialPage() const
{
    return m_initial;
}

TNextstep *TQdtjyjc::nextPage() const
{
    return m_next;
}

void TQdtjyjc::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_pages)
            return;
        QWidget *client = clientWidget();
        m_lblTitle = WidgetFactory::label(QStringLiteral("清单单价云检查"), QStringLiteral("lblTitle"), client, 150, 24);
        m_lblDescribe = WidgetFactory::label(
            QStringLiteral("根据清单信息在积累数据库中进行匹配，对当前单位工程的清单单价进行对比检查。"),
            QStringLiteral("lblDescribe"), client, 500, 24);
        QFont small = m_lblDescribe->font();
        small.setPixelSize(12);
        m_lblDescribe->setFont(small);
        m_lblLine1 = WidgetFactory::rule(QStringLiteral("lblLine1"), client, 564, QStringLiteral("#DCDFE6"));
        m_lblLine2 = WidgetFactory::rule(QStringLiteral("lblLine2"), client, 564, QStringLiteral("#DCDFE6"));
        m_pages = new zTabContent(client);
        m_pages->setObjectName(QStringLiteral("tabContent"));
        m_pages->setTabBarVisible(false);
        auto *buttons = new ButtonRow(client);
        m_btnPrevious = buttons->addButton(QStringLiteral("上一步"), QStringLiteral("btnSyb"));
        buttons->addGap(5);
        m_btnOk = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnQd"));
        m_btnNext = buttons->addButton(QStringLiteral("下一步"), QStringLiteral("btnXyb"));
        buttons->addGap(5);
        m_btnClose = buttons->addButton(QStringLiteral("关闭"), QStringLiteral("btnGb"));

        auto *describe = new QHBoxLayout;
        describe->addSpacing(px(15));
        describe->addWidget(m_lblDescribe);
        describe->addStretch();
        auto *body = new QVBoxLayout;
        body->setContentsMargins(px(18), px(10), px(18), px(12));
        body->setSpacing(0);
        body->addWidget(m_lblTitle);
        body->addLayout(describe);
        body->addSpacing(px(20));
        body->addSpacing(px(15));
        body->addWidget(m_lblLine1);
        body->addWidget(m_pages, 1);
        body->addWidget(m_lblLine2);
        body->addSpacing(px(10));
        body->addLayout(buttons);
        clientLayout()->addLayout(body);

        connect(m_btnNext, &QPushButton::clicked, this, &TQdtjyjc::NextStep);
        connect(m_btnPrevious, &QPushButton::clicked, this, &TQdtjyjc::PreviousStep);
        connect(m_btnOk, &QPushButton::clicked, this, &TQdtjyjc::QdButton);
        connect(m_btnClose, &QPushButton::clicked, this, &TQdtjyjc::GbButton);
        m_steps = new WizardSteps(m_pages, this);
        // Enter moves forward on each page, never "关闭".
        m_steps->addStep([this] { return firstPage(); }, {m_btnNext}, m_btnNext);
        m_steps->addStep([this] { return secondPage(); }, {m_btnPrevious, m_btnOk}, m_btnOk);
        m_steps->closeOnEscape(this);
        InitUI();
    });
}

void TQdtjyjc::InitUI()
{
    GUARDED(kSource, [&] {
        if (!m_pages)
            return;
        QFont font(QStringLiteral("Microsoft YaHei"));
        font.setPixelSize(13);
        font.setWeight(75);
        m_lblTitle->setFont(font);
        Switchover(curStep);
    });
}

TInitial *TQdtjyjc::firstPage()
{
    m_initial = new TInitial(m_pages);
    m_initial->CreateUI();
    m_forward = connect(m_initial.data(), &TInitial::signalYxysChanged, this, &TQdtjyjc::signalYxysChanged);
    connect(m_initial->serverChoice(), &CloudServerChoice::signalServersReset, this, &TQdtjyjc::backToFirstPage);
    return m_initial;
}

TNextstep *TQdtjyjc::secondPage()
{
    m_next = new TNextstep(m_pages);
    m_next->CreateUI();
    return m_next;
}

void TQdtjyjc::Switchover(short step)
{
    GUARDED(kSource, [&] {
        curStep = step;
        // Time and place are fixed for this run from the second step on.
        if (step == 1)
            disconnect(m_forward);
        m_steps->showStep(step);
    });
}

void TQdtjyjc::NextStep()
{
    GUARDED(kSource, [&] {
        if (m_initial && m_initial->serverChoice()->checkServer(this))
            Switchover(1);
    });
}

void TQdtjyjc::PreviousStep()
{
    GUARDED(kSource, [&] { Switchover(0); });
}

void TQdtjyjc::QdButton()
{
    GUARDED(kSource, [&] {
        if (!m_initial || !m_next)
            return;
        LtdInfo *server = m_initial->getCurrServer();
        const int matchNum = inputs().matchNum();
        QPointer<TQdtjyjc> self(this);
        close();
        if (self)
            emit signalQdButtonClicked(server, matchNum);
    });
}

void TQdtjyjc::GbButton()
{
    GUARDED(kSource, [&] { close(); });
}

void TQdtjyjc::actCancel()
{
    GbButton();
}

void TQdtjyjc::backToFirstPage()
{
    GUARDED(kSource, [&] { Switchover(0); });
}

void TQdtjyjc::setSjDdHb(QString &sj, QString &dd, QString &hb)
{
    GUARDED(kSource, [&] {
        if (!m_initial)
            return;
        m_initial->setLblSjsz(PriceCheckInputs::timeOrThisMonth(sj));
        m_initial->setLblDdsz(dd);
        m_initial->setLblHbsz(hb);
    });
}

void TQdtjyjc::setYyfwText(const QString &text)
{
    GUARDED(kSource, [&] {
        if (m_initial)
            m_initial->setLblDqjjb(text);
    });
}

QString TQdtjyjc::getSJ() const
{
    return m_initial ? m_initial->getsj() : QString();
}

QString TQdtjyjc::getDD() const
{
    return m_initial ? m_initial->getdd() : QString();
}

PriceCheckInputs TQdtjyjc::inputs() const
{
    PriceCheckInputs in = m_initial ? m_initial->inputs() : PriceCheckInputs();
    if (m_next)
        in.setMatchNum(m_next->getcomPjzChecked().toInt());
    return in;
}
