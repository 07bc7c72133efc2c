#include "tbzqdycc.h"
#include "storagerequests.h"
#include "tbzqdycc_xjqdk.h"

#include <cloud/cloudexchange.h>

#include <hostapi/childdialog.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/messagebox.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/zbasecombox.h>
#include <hostapi/zbaselabel.h>

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "TotalYcc";

QString newLibraryText()
{
    return QStringLiteral("新建清单库");
}

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}
}

TBzqdycc::TBzqdycc(QWidget *parent)
    : zBaseForm(parent)
{
}

void TBzqdycc::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_comXmk)
            return;
        m_lblIcon = WidgetFactory::label(QString(), QStringLiteral("lblIcon"), this);
        m_lblIcon->setPixmap(WidgetFactory::icon(QStringLiteral(":/Image/Velostra/s_icon_qdycc.svg")).pixmap(px(20), px(20)));
        m_lblTitle = WidgetFactory::label(QStringLiteral("清单云存储"), QStringLiteral("lblTitle"), this);
        QFont bold = m_lblTitle->font();
        bold.setPixelSize(14);
        bold.setBold(true);
        m_lblTitle->setFont(bold);
        m_lblYcc = WidgetFactory::label(QStringLiteral("本功能是将指定清单保存到个人云或企业云的清单库中,可用于其他工程编制过程中的插入清单、"
                                                       "智能特征、智能组价等功能使用。"),
                                        QStringLiteral("lblYcc"), this);
        m_lblYcc->setWordWrap(true);
        m_lblNote = WidgetFactory::label(QStringLiteral("有计算行的清单无法保存组价内容。"), QStringLiteral("lblNote"), this,
                                         QStringLiteral("color:#E6A23C;"));
        m_lblBcnr = WidgetFactory::label(QStringLiteral("保存内容:"), QStringLiteral("lblBcnr"), this);
        m_lblBcwz = WidgetFactory::label(QStringLiteral("保存位置:"), QStringLiteral("lblBcwz"), this);
        m_lblXmk = WidgetFactory::label(QStringLiteral("项目库"), QStringLiteral("lblXmk"), this);
        m_content = new QButtonGroup(this);
        m_radQdzj = contentRadio(QStringLiteral("清单及组价内容"), QStringLiteral("radQdzj"), 0);
        m_radQdjg = contentRadio(QStringLiteral("清单及价格"), QStringLiteral("radQdjg"), 1);
        m_radJqd = contentRadio(QStringLiteral("仅清单"), QStringLiteral("radJqd"), 2);
        m_radQdzj->setChecked(true);
        m_lblBczj = hint(QStringLiteral("保存清单编码、名称、特征及组价定额、工料机等完整组价信息"), QStringLiteral("lblBczj"));
        m_lblDjxx = hint(QStringLiteral("保存清单编码、名称、特征及单价信息"), QStringLiteral("lblDjxx"));
        m_lblBcqdbm = hint(QStringLiteral("保存清单编码、名称、项目特征等信息"), QStringLiteral("lblBcqdbm"));
        m_comServer = new CloudServerCombox(this);
        m_comServer->setObjectName(QStringLiteral("comServer"));
        m_comServer->setFixedSize(px(200), px(30));
        m_comXmk = new zBaseCombox(this);
        m_comXmk->setObjectName(QStringLiteral("comXmk"));
        m_comXmk->setFixedSize(px(200), px(30));
        buildLayout();

        CloudServerChoice *choice = createServerChoice(m_comServer, GuardSite(kSource, this));
        connect(choice, &CloudServerChoice::signalReloadData, this, &TBzqdycc::initQdk);
        connect(choice, &CloudServerChoice::signalClearData, this, &TBzqdycc::clearLibraries);
        choice->start();
    });
}

QRadioButton *TBzqdycc::contentRadio(const QString &text, const QString &name, int id)
{
    auto *radio = new QRadioButton(text, this);
    radio->setObjectName(name);
    m_content->addButton(radio, id);
    return radio;
}

QLabel *TBzqdycc::hint(const QString &text, const QString &name)
{
    auto *label = new zBaseLabel(text, this);
    label->setObjectName(name);
    label->setStyleSheet(QStringLiteral("zBaseLabel{font-size: %1px;color:#AEAEAE;}").arg(px(12)));
    return label;
}

void TBzqdycc::buildLayout()
{
    auto *title = new QHBoxLayout;
    title->setSpacing(px(6));
    title->addWidget(m_lblIcon);
    title->addWidget(m_lblTitle);
    title->addStretch();

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(px(10));
    grid->setVerticalSpacing(px(2));
    grid->setColumnMinimumWidth(0, px(70));
    int row = 0;
    grid->addWidget(m_lblBcnr, row, 0, Qt::AlignLeft | Qt::AlignVCenter);
    for (auto pair : {qMakePair(m_radQdzj, m_lblBczj), qMakePair(m_radQdjg, m_lblDjxx), qMakePair(m_radJqd, m_lblBcqdbm)}) {
        grid->addWidget(pair.first, row++, 1);
        grid->addWidget(pair.second, row, 1);
        grid->setRowMinimumHeight(row++, px(22));
    }
    grid->setRowMinimumHeight(row++, px(10));
    grid->addWidget(m_lblBcwz, row, 0);
    grid->addWidget(m_comServer, row++, 1, Qt::AlignLeft);
    grid->addWidget(m_lblXmk, row, 0);
    grid->addWidget(m_comXmk, row++, 1, Qt::AlignLeft);
    grid->setColumnStretch(2, 1);

    auto *page = new QVBoxLayout(this);
    page->setContentsMargins(px(24), px(14), px(24), px(6));
    page->setSpacing(px(6));
    page->addLayout(title);
    page->addWidget(m_lblYcc);
    page->addWidget(m_lblNote);
    page->addSpacing(px(8));
    page->addLayout(grid);
    page->addStretch();
}

int TBzqdycc::getQdContent() const
{
    const int id = m_content ? m_content->checkedId() : -1;
    return id < 0 ? 0 : id;
}

QString TBzqdycc::GetXmk() const
{
    if (!m_comXmk)
        return QString();
    const QString id = m_comXmk->currentData().toString();
    return id == newLibraryText() ? QString() : id;
}

void TBzqdycc::clearLibraries()
{
    disconnect(m_comXmk, nullptr, this, nullptr);
    m_comXmk->clear();
}

void TBzqdycc::reconnect()
{
    connect(m_comXmk, qOverload<int>(&QComboBox::currentIndexChanged), this, &TBzqdycc::slotXjqdk);
}

void TBzqdycc::initQdk()
{
    GUARDED(kSource, [&] {
        if (!m_comXmk)
            return;
        clearLibraries();
        if (LtdInfo *server = getCurrServer()) {
            const CloudReply reply = CloudExchange::send(StorageRequests::libraryList(server));
            if (reply.answered() && reply.code() != 0 && !m_listMsgShown && !reply.msg().isEmpty()) {
                m_listMsgShown = true;
                CloudExchange(GuardSite(kSource, this)).showFailure(reply);
            }
            if (reply.succeeded())
                fillLibraries(reply.dataArray());
        }
        m_comXmk->addItem(newLibraryText(), newLibraryText());
        m_comXmk->setItemData(m_comXmk->count() - 1, QColor(0x2F, 0x7C, 0xF6), Qt::ForegroundRole);
        if (m_comXmk->count() > 1)
            m_comXmk->setCurrentIndex(0);
        reconnect();
    });
}

void TBzqdycc::fillLibraries(const QJsonArray &libraries)
{
    if (libraries.isEmpty())
        m_comXmk->addItem(QString());
    for (const QJsonValue &value : libraries) {
        const QJsonObject library = value.toObject();
        m_comXmk->addItem(library.value(QStringLiteral("mc")).toString(),
                          library.value(QStringLiteral("id")).toVariant().toString());
    }
}

void TBzqdycc::slotXjqdk(int index)
{
    GUARDED(kSource, [&] {
        if (m_xjqdk || m_comXmk->itemData(index).toString() != newLibraryText())
            return;
        LtdInfo *server = getCurrServer();
        if (server && RequestQdEdit(server)) {
            QWidget *owner = window()->parentWidget() ? window()->parentWidget()->window() : window();
            m_xjqdk = new TBzqdycc_Xjqdk(server, owner);
            ChildDialog::run(this, m_xjqdk);
        }
        initQdk();
    });
}

int TBzqdycc::CheckPowerByQyk(bool showMessage)
{
    return GUARDED_OR(0, kSource, [&] {
        LtdInfo *server = getCurrServer();
        if (!StorageRequests::usesLibraryPermission(server))
            return 0;
        const QString qdkid = m_comXmk->currentIndex() < 0 ? QString() : m_comXmk->currentData().toString();
        const CloudReply reply = CloudExchange::send(StorageRequests::libraryPermission(server, qdkid));
        if (!reply.answered())
            return 0;
        if (reply.code() != 0 && showMessage && !reply.msg().isEmpty())
            CloudExchange(GuardSite(kSource, this)).showFailure(reply);
        return reply.code();
    });
}

bool TBzqdycc::RequestQdEdit(LtdInfo *server)
{
    return GUARDED_OR(false, kSource, [&] {
        CloudExchange cloud(GuardSite(kSource, this));
        return cloud.call(StorageRequests::editPermission(server)).has_value();
    });
}

bool TBzqdycc::mayWrite()
{
    LtdInfo *server = getCurrServer();
    if (StorageRequests::usesLibraryPermission(server))
        return CheckPowerByQyk(true) == 0;
    return RequestQdEdit(server);
}
