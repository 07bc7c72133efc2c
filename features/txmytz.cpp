#include "txmytz.h"

#include <cloud/cloudsources.h>
#include <cloud/moduletitle.h>

#include <hostapi/buttonrow.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/widgetfactory.h>

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {
const char kSource[] = "..\\Xmytz";

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}
}

TXmytz::TXmytz(QWidget *parent)
    : zTitleModal(parent)
{
    OnlyClose();
    SetCaption(veloraModuleTitle());
    SetHeaderIcon(QStringLiteral(":/Image/Velostra/s_icon_xmytz.svg"));
    setBackgroundColor(QColor(QStringLiteral("#F5F7F9")));
    setFont(QFont(QStringLiteral("Microsoft YaHei")));
    setScaledFixedSize(520, 330);
    CreateUI();
    initIsFirst();
}

void TXmytz::CreateUI()
{
    QWidget *client = clientWidget();
    auto *title = WidgetFactory::label(QStringLiteral("项目云特征:"), QStringLiteral("lblTitle"), client);
    QFont bold = title->font();
    bold.setPixelSize(px(14));
    bold.setBold(true);
    title->setFont(bold);
    auto *combo = new CloudServerCombox(client);
    combo->setObjectName(QStringLiteral("comServer"));
    combo->setFixedSize(px(220), px(32));
    m_lblDqjjb = WidgetFactory::label(QString(), QStringLiteral("lblDqjjb"), client);
    m_chkSkip = new QCheckBox(QStringLiteral("已有单价清单不匹配"), client);
    m_chkSkip->setObjectName(QStringLiteral("chkYydjqdbpp"));
    CloudSourcesOptions options;
    options.source = kSource;
    options.initialMode = 3;
    options.checkStorage = CloudSourcesOptions::CheckStorage::ReadOnly;
    options.hideLinkWithoutSource = true;
    m_sources = new CloudSources(options, this);

    auto *form = new QGridLayout;
    form->setHorizontalSpacing(px(10));
    form->setVerticalSpacing(px(14));
    form->addWidget(WidgetFactory::label(QStringLiteral("云服务器："), QStringLiteral("lblServer"), client), 0, 0);
    form->addWidget(combo, 0, 1, Qt::AlignLeft);
    form->addWidget(WidgetFactory::label(QStringLiteral("应用范围："), QStringLiteral("lblYyfw"), client), 1, 0);
    form->addWidget(m_lblDqjjb, 1, 1);
    form->addWidget(m_chkSkip, 2, 1);
    form->addWidget(WidgetFactory::label(QStringLiteral("特征来源："), QStringLiteral("lblTzly"), client), 3, 0);
    form->addWidget(m_sources->sourcesRow(), 3, 1);
    form->addWidget(m_sources->selectionRow(), 4, 1);
    form->setColumnStretch(1, 1);
    auto *buttons = new ButtonRow(client);
    buttons->setButtonSize(80, 30);
    buttons->addOkCancel(this, 10);

    auto *body = new QVBoxLayout;
    body->setContentsMargins(px(24), px(12), px(24), px(16));
    body->setSpacing(px(16));
    body->addWidget(title);
    body->addLayout(form);
    body->addStretch();
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
    m_sources->follow(startServerChoice(combo, GuardSite(kSource, this)));
}

void TXmytz::initIsFirst()
{
    GUARDED(kSource, [&] { m_sources->readChecks(); });
}

void TXmytz::setCurrJjb(JJBTableBase *table)
{
    m_table = table;
    m_sources->setCurrJjb(table);
}

void TXmytz::setUnitWork(WorkBaseObject *unitWork)
{
    m_sources->setUnitWork(unitWork);
}

void TXmytz::SetSjkm(QString sjkm)
{
    m_sources->setSjkm(sjkm);
}

void TXmytz::setLblDqjjb(const QString &text)
{
    m_lblDqjjb->setText(text);
}

void TXmytz::readGcid()
{
    m_sources->readGcid();
}

void TXmytz::setGcCheckedName()
{
    m_sources->setGcCheckedName();
}

int TXmytz::sourceMask() const
{
    return m_sources->mode();
}

QStringList TXmytz::projectIds() const
{
    return m_sources->projectIds();
}

void TXmytz::slotClearClicked()
{
    m_sources->slotClearClicked();
}

void TXmytz::slotGCSXClicked()
{
    m_sources->slotGCSXClicked();
}

void TXmytz::slotGCSXSured(const QList<QMap<QString, QVariant>> &projects)
{
    m_sources->slotGCSXSured(projects);
}

void TXmytz::gcTypeClicked()
{
    m_sources->gcTypeClicked();
}

void TXmytz::actOk()
{
    QdButton();
}

void TXmytz::QdButton()
{
    GUARDED(kSource, [&] {
        if (!serverChoice()->checkServer(this) || !m_sources->checkSource())
            return;
        LtdInfo *server = getCurrServer();
        const bool skip = m_chkSkip->isChecked();
        const int mask = sourceMask();
        const QStringList ids = projectIds();
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(m_table, 8, QStringLiteral("修改项目特征")));
        close();
        emit signalQdButtonClicked(server, skip, mask, ids);
        RURecordControl::EndRecord();
    });
}
