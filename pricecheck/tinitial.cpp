#include "tinitial.h"

#include <cloud/tqdtjyjc_yxys.h>

#include <hostapi/childdialog.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "Qddjyjc";
}

TInitial::TInitial(QWidget *parent)
    : zBaseForm(parent)
{
}

void TInitial::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_lblYxys)
            return;
        QFont small = font();
        small.setPixelSize(12);
        setFont(small);
        m_lblYxys = WidgetFactory::label(QStringLiteral("影响因素："), QStringLiteral("lblYxys"), this);
        m_lblSj = WidgetFactory::label(QStringLiteral("时间："), QStringLiteral("lblSj"), this);
        m_lblSjsz = WidgetFactory::label(QString(), QStringLiteral("lblSjsz"), this);
        m_lblDd = WidgetFactory::label(QStringLiteral("地点:"), QStringLiteral("lblDd"), this);
        m_lblDdsz = WidgetFactory::label(QString(), QStringLiteral("lblDdsz"), this);
        m_lblHb = WidgetFactory::label(QStringLiteral("海拔:"), QStringLiteral("lblHb"), this);
        m_lblHbsz = WidgetFactory::label(m_inputs.altitude(), QStringLiteral("lblHbsz"), this);
        m_lblHbsz->setTextFormat(Qt::PlainText);
        m_lblYyfw = WidgetFactory::label(QStringLiteral("应用范围:"), QStringLiteral("lblYyfw"), this);
        m_lblDqjjb = WidgetFactory::label(QString(), QStringLiteral("lblDqjjb"), this);
        m_lblDjly = WidgetFactory::label(QStringLiteral("单价来源:"), QStringLiteral("lblDjly"), this);
        m_btnXg = WidgetFactory::button(QStringLiteral("修改"), QStringLiteral("btnXg"), this);
        m_btnXg->setFixedWidth(InterfaceAdaptation::scaled(33));
        m_btnXg->setCursor(Qt::PointingHandCursor);
        m_btnXg->setStyleSheet(QStringLiteral("#btnXg{color:#2F7CF6;border:none;background:transparent;padding:0;}"
                                              "#btnXg:hover{text-decoration:underline;}"));
        m_comServer = new CloudServerCombox(this);
        m_comServer->setObjectName(QStringLiteral("comServer"));
        m_comServer->setFixedSize(InterfaceAdaptation::scaled(220), InterfaceAdaptation::scaled(38));
        buildLayout();
        connect(m_btnXg, &QPushButton::clicked, this, &TInitial::Modify);

        startServerChoice(m_comServer, GuardSite(kSource, this));
    });
}

void TInitial::buildLayout()
{
    auto row = [](int lead, QWidget *a, QWidget *b = nullptr) {
        auto *r = new QHBoxLayout;
        r->addSpacing(InterfaceAdaptation::scaled(lead));
        r->addWidget(a, 0, Qt::AlignTop);
        if (b)
            r->addWidget(b, 0, Qt::AlignTop);
        r->addStretch();
        return r;
    };
    auto *page = new QVBoxLayout(this);
    page->setSpacing(InterfaceAdaptation::scaled(3));
    page->setContentsMargins(InterfaceAdaptation::scaled(10), InterfaceAdaptation::scaled(8), 0, 0);
    page->addLayout(row(5, m_lblYxys));
    page->addLayout(row(5, m_lblSj, m_lblSjsz));
    page->addLayout(row(5, m_lblDd, m_lblDdsz));
    page->addLayout(row(5, m_lblHb, m_lblHbsz));
    page->addLayout(row(5, m_btnXg));
    page->addSpacing(InterfaceAdaptation::scaled(20));
    page->addLayout(row(5, m_lblYyfw, m_lblDqjjb));
    page->addSpacing(InterfaceAdaptation::scaled(10));
    page->addLayout(row(5, m_lblDjly, m_comServer));
    page->addSpacing(InterfaceAdaptation::scaled(30));
    page->addStretch();
}

QString TInitial::getsj() const
{
    return m_inputs.checkTime();
}

QString TInitial::getdd() const
{
    return m_inputs.placeLabel();
}

void TInitial::setLblSjsz(const QString &text)
{
    m_inputs.setTime(text);
    if (m_lblSjsz)
        m_lblSjsz->setText(text);
}

void TInitial::setLblDdsz(const QString &text)
{
    m_inputs.setPlace(text);
    if (m_lblDdsz)
        m_lblDdsz->setText(m_inputs.placeLabel());
}

void TInitial::setLblHbsz(const QString &text)
{
    m_inputs.setAltitude(text);
    if (m_lblHbsz)
        m_lblHbsz->setText(text);
}

void TInitial::setLblDqjjb(const QString &text)
{
    if (m_lblDqjjb)
        m_lblDqjjb->setText(text);
}

void TInitial::slotTimeAndPathChanged(const QString &sj, const QString &dd)
{
    GUARDED(kSource, [&] {
        setLblSjsz(sj);
        setLblDdsz(dd);
    });
}

void TInitial::Modify()
{
    GUARDED(kSource, [&] {
        if (!m_lblSjsz || m_yxys)
            return;
        m_yxys = new TQdtjyjc_Yxys(this);
        m_yxys->CreateUI();
        m_yxys->setComSjText(m_inputs.time());
        m_yxys->setComDdText(m_inputs.placeText());
        connect(m_yxys.data(), &InfluenceFactorDialog::signalTimeAndPath, this, &TInitial::slotTimeAndPathChanged);
        bool sync = false;
        ChildDialog::run(this, m_yxys, [&](int) { sync = m_yxys->getChecked(); });
        if (sync)
            emit signalYxysChanged(m_inputs.time(), m_inputs.place());
    });
}
