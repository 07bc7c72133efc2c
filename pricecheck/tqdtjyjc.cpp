#include "tqdtjyjc.h"
#include "tinitial.h"
#include "tnextstep.h"

#include <cloud/cloudserverchoice.h>
#include <cloud/moduletitle.h>

#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
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

QPushButton *TQdtjyjc::button(const QString &text, const QString &name)
{
    auto *b = new QPushButton(text, clientWidget());
    b->setObjectName(name);
    return b;
}

QLabel *TQdtjyjc::rule(const QString &name)
{
    auto *l = new QLabel(clientWidget());
    l->setObjectName(name);
    l->setFixedSize(px(564), px(1));
    l->setStyleSheet(QStringLiteral("background:#DCDFE6;"));
    return l;
}

void TQdtjyjc::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_pages)
            return;
        m_lblTitle = new QLabel(QStringLiteral("清单单价云检查"), clientWidget());
        m_lblTitle->setObjectName(QStringLiteral("lblTitle"));
        m_lblTitle->setFixedSize(px(150), px(24));
        m_lblDescribe = new QLabel(
            QStringLiteral("根据清单信息在积累数据库中进行匹配，对当前单位工程的清单单价进行对比检查。"), clientWidget());
        m_lblDescribe->setObjectName(QStringLiteral("lblDescribe"));
        m_lblDescribe->setFixedSize(px(500), px(24));
        QFont small = m_lblDescribe->font();
        small.setPixelSize(12);
        m_lblDescribe->setFont(small);
        m_lblLine1 = rule(QStringLiteral("lblLine1"));
        m_lblLine2 = rule(QStringLiteral("lblLine2"));
        m_pages = new zTabContent(clientWidget());
        m_pages->setObjectName(QStringLiteral("tabContent"));
        m_pages->setTabBarVisible(false);
        m_btnPrevious = button(QStringLiteral("上一步"), QStringLiteral("btnSyb"));
        m_btnOk = button(QStringLiteral("确定"), QStringLiteral("btnQd"));
        m_btnNext = button(QStringLiteral("下一步"), QStringLiteral("btnXyb"));
        m_btnClose = button(QStringLiteral("关闭"), QStringLiteral("btnGb"));

        auto *describe = new QHBoxLayout;
        describe->addSpacing(px(15));
        describe->addWidget(m_lblDescribe);
        describe->addStretch();
        auto *buttons = new QHBoxLayout;
        buttons->addStretch();
        buttons->addWidget(m_btnPrevious);
        buttons->addSpacing(px(5));
        buttons->addWidget(m_btnOk);
        buttons->addWidget(m_btnNext);
        buttons->addSpacing(px(5));
        buttons->addWidget(m_btnClose);
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
        showStepButtons(false);
        Switchover(curStep);
    });
}

void TQdtjyjc::showStepButtons(bool secondStep)
{
    m_btnPrevious->setVisible(secondStep);
    m_btnOk->setVisible(secondStep);
    m_btnNext->setVisible(!secondStep);
}

void TQdtjyjc::Switchover(short step)
{
    GUARDED(kSource, [&] {
        curStep = step;
        if (step == 0) {
            if (!m_initial) {
                m_initial = new TInitial(m_pages);
                m_initial->CreateUI();
                m_forward = connect(m_initial.data(), &TInitial::signalYxysChanged, this, &TQdtjyjc::signalYxysChanged);
                connect(m_initial->serverChoice(), &CloudServerChoice::signalServersReset, this,
                        &TQdtjyjc::backToFirstPage);
                m_pages->addPage(m_initial);
            }
            m_pages->setCurrentPage(m_initial);
        } else if (step == 1) {
            // Time and place are fixed for this run from here on.
            disconnect(m_forward);
            if (!m_next) {
                m_next = new TNextstep(m_pages);
                m_next->CreateUI();
                m_pages->addPage(m_next);
            }
            m_pages->setCurrentPage(m_next);
        }
    });
}

void TQdtjyjc::NextStep()
{
    GUARDED(kSource, [&] {
        if (!m_initial || !m_initial->serverChoice()->checkServer(this))
            return;
        curStep = 1;
        showStepButtons(true);
        Switchover(1);
    });
}

void TQdtjyjc::PreviousStep()
{
    GUARDED(kSource, [&] {
        curStep = 0;
        showStepButtons(false);
        Switchover(0);
    });
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
    GUARDED(kSource, [&] {
        showStepButtons(false);
        Switchover(0);
    });
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
