#include "tznyzj.h"

#include <cloud/cloudserverchoice.h>
#include <cloud/cloudsources.h>
#include <cloud/moduletitle.h>

#include <hostapi/buttonrow.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>

#include <QCheckBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "Znyzj";

const QString kDescription = QStringLiteral(
    "<p  style='text-indent:25px;'>本功能根据清单编号、单位、项目特征、项目名称、计价方式、清单性质、定额类别等要素从指定的组价来"
    "<br />源库中,自动选择应用匹配度最高的组价内容。应用成功的清单自动标红。 <b>工程量为零的清单不参与智能组价</b>。</p>");

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}

QLabel *captionLabel(const QString &text, const QString &name, QWidget *parent)
{
    QLabel *label = WidgetFactory::label(text, name, parent);
    label->setStyleSheet(QStringLiteral("color:#606266;"));
    return label;
}
}

TZnyzj::TZnyzj(QWidget *parent)
    : zTitleModal(parent)
{
    setScaledFixedSize(560, 400);
    OnlyClose();
    SetCaption(veloraModuleTitle());
    setBackgroundColor(QColor(QStringLiteral("#F5F7F9")));
}

void TZnyzj::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_sources)
            return;
        QWidget *client = clientWidget();
        auto *body = new QVBoxLayout;
        body->setContentsMargins(px(24), px(12), px(24), px(18));
        body->setSpacing(px(12));
        body->addWidget(buildHeader());

        CloudSourcesOptions options;
        options.source = kSource;
        m_sources = new CloudSources(options, this);
        m_sources->setSjkm(m_sjkm);
        m_sources->setUnitWork(m_unitWork);
        m_sources->setCurrJjb(m_table);

        m_lblDqjjb = WidgetFactory::label(QString(), QStringLiteral("lblDqjjb"), client);
        m_lblDqjjb->setTextFormat(Qt::PlainText);
        m_comServer = new CloudServerCombox(client);
        m_comServer->setObjectName(QStringLiteral("comServer"));
        m_comServer->setFixedSize(px(220), px(30));
        m_chkYydj = new QCheckBox(QStringLiteral("已有单价清单不匹配"), client);
        m_chkYydj->setObjectName(QStringLiteral("chkYydj"));
        m_chkYydj->setChecked(true);

        auto *scope = new QHBoxLayout;
        scope->addWidget(captionLabel(QStringLiteral("应用范围："), QStringLiteral("lblYyfw"), client));
        scope->addWidget(m_lblDqjjb, 1);
        body->addLayout(scope);
        auto *server = new QHBoxLayout;
        server->addWidget(captionLabel(QStringLiteral("组价服务器："), QStringLiteral("lblZjfwq"), client));
        server->addWidget(m_comServer);
        server->addSpacing(px(16));
        server->addWidget(m_chkYydj);
        server->addStretch();
        body->addLayout(server);
        auto *sources = new QHBoxLayout;
        sources->addWidget(captionLabel(QStringLiteral("组价来源："), QStringLiteral("lblZjly"), client));
        sources->addWidget(m_sources->sourcesRow(), 1);
        body->addLayout(sources);
        body->addWidget(m_sources->selectionRow());
        body->addStretch();
        auto *buttons = new ButtonRow(client);
        buttons->setButtonSize(72, 28);
        QPushButton *ok = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnOk"));
        buttons->addGap(8);
        QPushButton *cancel = buttons->addButton(QStringLiteral("取消"), QStringLiteral("btnCancel"));
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
        connect(ok, &QPushButton::clicked, this, &TZnyzj::QdButton);
        connect(cancel, &QPushButton::clicked, this, &TZnyzj::GbButton);

        CloudServerChoice *choice = createServerChoice(m_comServer, GuardSite(kSource, this));
        m_sources->follow(choice);
        choice->start();
    });
}

QWidget *TZnyzj::buildHeader()
{
    auto *header = new QWidget(clientWidget());
    header->setObjectName(QStringLiteral("widgetHeader"));
    auto *icon = WidgetFactory::label(QString(), QStringLiteral("lblIcon"), header, 40, 40);
    icon->setPixmap(WidgetFactory::icon(QStringLiteral(":/Image/Velostra/s_icon_znyzj.svg")).pixmap(px(40), px(40)));
    auto *title = WidgetFactory::label(QStringLiteral("智能云组价"), QStringLiteral("lblZnyzj"), header);
    title->setStyleSheet(QStringLiteral("#lblZnyzj{font-weight:bold;font-size:16px;color:#303133;}"));
    auto *text = WidgetFactory::label(kDescription, QStringLiteral("lblSm"), header);
    text->setTextFormat(Qt::RichText);
    text->setWordWrap(true);
    text->setStyleSheet(QStringLiteral("#lblSm{color:#606266;}"));
    auto *top = new QHBoxLayout;
    top->setSpacing(px(10));
    top->addWidget(icon);
    top->addWidget(title);
    top->addStretch();
    auto *layout = new QVBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(px(8));
    layout->addLayout(top);
    layout->addWidget(text);
    return header;
}

void TZnyzj::setLblDqjjb(const QString &text)
{
    if (m_lblDqjjb)
        m_lblDqjjb->setText(text);
}

void TZnyzj::setCurrJjb(JJBTableBase *table)
{
    m_table = table;
    if (m_sources)
        m_sources->setCurrJjb(table);
}

void TZnyzj::setUnitWork(WorkBaseObject *unitWork)
{
    m_unitWork = unitWork;
    if (m_sources)
        m_sources->setUnitWork(unitWork);
}

void TZnyzj::setSjkm(QString sjkm)
{
    m_sjkm = sjkm;
    if (m_sources)
        m_sources->setSjkm(sjkm);
}

void TZnyzj::QdButton()
{
    GUARDED(kSource, [&] {
        if (!m_sources || !serverChoice()->checkServer(this) || !m_sources->checkSource())
            return;
        const LtdInfo server = *getCurrServer();
        const bool skipPriced = m_chkYydj->isChecked();
        const int gcType = m_sources->mode();
        const QStringList projectIds = m_sources->projectIds();
        close();
        emit signalQdButtonClicked(server, skipPriced, gcType, projectIds);
    });
}

void TZnyzj::GbButton()
{
    GUARDED(kSource, [&] { close(); });
}
