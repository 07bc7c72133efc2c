#include "tvelqddjjc.h"
#include "cloudbilldetails.h"
#include "pricecheckdetails.h"
#include "pricecheckinputs.h"
#include "pricecomparison.h"

#include <cloud/cloudexchange.h>
#include <cloud/moduletitle.h>
#include <cloud/tvelqddjjc_yxys.h>

#include <hostapi/basedataitem.h>
#include <hostapi/childdialog.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/fymodel.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/messagebox.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/zbasecombox.h>
#include <hostapi/zgroupheaderview.h>
#include <hostapi/zstandardtreenodedata.h>
#include <hostapi/ztabcontent.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>
#include <hostapi/ztreemodel.h>
#include <hostapi/ztreeview.h>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "VelQddjjc";
const QString kSummary = QStringLiteral("原单价");

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}

}

TVelQddjjc::TVelQddjjc(QWidget *parent)
    : zTitleModal(parent)
{
    setScaledFixedSize(960, 678);
    OnlyClose();
    SetCaption(veloraModuleTitle());
    setBackgroundColor(QColor(QStringLiteral("#F5F7F9")));
    connect(this, &TVelQddjjc::signalItemIdChanged, this, &TVelQddjjc::slotItemIdChanged);
    connect(this, &TVelQddjjc::signalItemNameChanged, this, &TVelQddjjc::slotItemNameChanged);
    connect(this, &TVelQddjjc::signalTimeChanged, this, &TVelQddjjc::slotTimeChanged);
    connect(this, &TVelQddjjc::signalPlaceChanged, this, &TVelQddjjc::slotPlaceChanged);
    connect(this, &TVelQddjjc::signalAltitudeChanged, this, &TVelQddjjc::slotAltitudeChanged);
    connect(this, &TVelQddjjc::signalJsTypeChanged, this, &TVelQddjjc::slotJsTypeChanged);
    connect(this, &TVelQddjjc::signalCloudDjDataChanged, this, &TVelQddjjc::setZjData);
}

void TVelQddjjc::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_list)
            return;
        QWidget *client = clientWidget();
        auto *body = new QVBoxLayout;
        body->setContentsMargins(px(16), px(8), px(16), px(14));
        body->setSpacing(px(8));
        body->addWidget(buildHeader());
        m_listModel = new zTableModel(this);
        declareColumns();
        m_list = new zTableView(client);
        m_list->setObjectName(QStringLiteral("wdtList"));
        m_list->setStyleSheet(QStringLiteral("QTableView{border:1px solid #E3E5E8; border-bottom:0px;}"));
        m_list->setModel(m_listModel);
        m_list->setHeaderHeight(28);
        m_list->verticalHeader()->hide();
        m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
        m_list->setSelectionMode(QAbstractItemView::SingleSelection);
        m_list->setFixedHeight(px(200));
        body->addWidget(m_list);
        body->addWidget(buildDetails(), 1);
        clientLayout()->addLayout(body);

        connect(m_btnDjjc, &QPushButton::clicked, this, &TVelQddjjc::slotCheck);
        connect(m_btnXg, &QPushButton::clicked, this, &TVelQddjjc::Modification);
        connect(m_btnPrevious, &QPushButton::clicked, this, &TVelQddjjc::signalPreviousPage);
        connect(m_btnNext, &QPushButton::clicked, this, &TVelQddjjc::signalNextPage);
        startServerChoice(m_comServer, GuardSite(kSource, this));
        InitUI();
    });
}

void TVelQddjjc::InitUI()
{
    GUARDED(kSource, [&] {
        if (!m_list)
            return;
        slotItemIdChanged();
        slotItemNameChanged();
        slotTimeChanged();
        slotPlaceChanged();
        slotAltitudeChanged();
        slotJsTypeChanged();
    });
}

QWidget *TVelQddjjc::buildHeader()
{
    auto *header = new QWidget(clientWidget());
    header->setObjectName(QStringLiteral("widgetHeader"));
    auto *icon = WidgetFactory::label(QString(), QStringLiteral("lblIcon"), header, 40, 40);
    icon->setPixmap(WidgetFactory::icon(QStringLiteral(":/Image/Velostra/s_icon_djyjc.svg")).pixmap(px(40), px(40)));
    auto *title = WidgetFactory::label(QStringLiteral("当前清单\n单价检查"), QStringLiteral("lblDqqdznzj"), header);
    title->setStyleSheet(QStringLiteral("#lblDqqdznzj{font-weight:bold;color:#2F7CF6;}"));
    auto caption = [header](const QString &text, const QString &name) {
        QLabel *l = WidgetFactory::label(text, name, header);
        l->setStyleSheet(QStringLiteral("color:#606266;"));
        return l;
    };
    auto value = [header](const QString &name) {
        QLabel *l = WidgetFactory::label(QString(), name, header);
        l->setTextFormat(Qt::PlainText);
        return l;
    };
    m_btnXg = WidgetFactory::button(QStringLiteral("修改"), QStringLiteral("btnXg"), header);
    m_btnXg->setCursor(Qt::PointingHandCursor);
    m_btnXg->setStyleSheet(QStringLiteral("#btnXg{color:#2F7CF6;border:none;background:transparent;padding:0;}"
                                          "#btnXg:hover{text-decoration:underline;}"));
    m_comServer = new CloudServerCombox(header);
    m_comServer->setObjectName(QStringLiteral("comServer"));
    m_comServer->setFixedSize(px(200), px(30));
    m_comPpgs = new zBaseCombox(header);
    m_comPpgs->setObjectName(QStringLiteral("comPpgs"));
    m_comPpgs->setItems({QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("5")});
    m_comPpgs->setFixedSize(px(60), px(28));
    m_btnDjjc = WidgetFactory::button(QStringLiteral("单价检查"), QStringLiteral("btnDjjc"), header, 80, 28);
    m_btnDjjc->setStyleSheet(QStringLiteral("#btnDjjc{background:#2F7CF6;color:white;border:none;border-radius:3px;}"));
    m_btnPrevious = WidgetFactory::iconButton(QStringLiteral("btnPrevious"), QStringLiteral(":/Image/Velostra/lastqd.svg"),
                                QStringLiteral(":/Image/Velostra/lastqd-HOVER.svg"), header);
    m_btnNext = WidgetFactory::iconButton(QStringLiteral("btnNext"), QStringLiteral(":/Image/Velostra/nextqd.svg"),
                            QStringLiteral(":/Image/Velostra/nextqd-HOVER.svg"), header);

    auto *grid = new QGridLayout(header);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(px(6));
    grid->setVerticalSpacing(px(6));
    grid->addWidget(icon, 0, 0, 2, 1);
    grid->addWidget(title, 0, 1, 2, 1);
    grid->addWidget(caption(QStringLiteral("项目编号:"), QStringLiteral("lblXmbhCaption")), 0, 2);
    grid->addWidget(value(QStringLiteral("lblXmbh")), 0, 3);
    grid->addWidget(caption(QStringLiteral("项目名称:"), QStringLiteral("lblXmmc")), 0, 4);
    grid->addWidget(value(QStringLiteral("lblXmmcData")), 0, 5, 1, 7);
    grid->addWidget(caption(QStringLiteral("影响因素:"), QStringLiteral("lblYxys")), 1, 2);
    auto *factors = new QHBoxLayout;
    factors->setSpacing(px(4));
    factors->addWidget(caption(QStringLiteral("时间:"), QStringLiteral("lblSj")));
    factors->addWidget(value(QStringLiteral("lblSjsj")));
    factors->addSpacing(px(8));
    factors->addWidget(caption(QStringLiteral("地点:"), QStringLiteral("lblDd")));
    factors->addWidget(value(QStringLiteral("lblDdsj")));
    factors->addSpacing(px(8));
    factors->addWidget(caption(QStringLiteral("海拔:"), QStringLiteral("lblHb")));
    factors->addWidget(value(QStringLiteral("lblHbsj")));
    factors->addSpacing(px(8));
    factors->addWidget(caption(QStringLiteral("计税:"), QStringLiteral("lblJs")));
    factors->addWidget(value(QStringLiteral("lblJssj")));
    factors->addSpacing(px(8));
    factors->addWidget(m_btnXg);
    factors->addStretch();
    grid->addLayout(factors, 1, 3, 1, 3);
    auto *source = new QHBoxLayout;
    source->setSpacing(px(6));
    source->addWidget(caption(QStringLiteral("单价来源:"), QStringLiteral("lblDjly")));
    source->addWidget(m_comServer);
    source->addSpacing(px(10));
    source->addWidget(caption(QStringLiteral("匹配个数:"), QStringLiteral("lblPpgs")));
    source->addWidget(m_comPpgs);
    source->addSpacing(px(10));
    source->addWidget(m_btnDjjc);
    source->addStretch();
    source->addWidget(m_btnPrevious);
    source->addWidget(m_btnNext);
    grid->addLayout(source, 2, 0, 1, 12);
    QLabel *note = WidgetFactory::label(QStringLiteral("注: 偏差率=（原单价-云单价）/ 云单价"), QStringLiteral("lblZs"), header);
    note->setStyleSheet(QStringLiteral("color:#909399;"));
    grid->addWidget(note, 3, 0, 1, 12);
    grid->setColumnStretch(5, 1);
    return header;
}

QWidget *TVelQddjjc::buildDetails()
{
    m_details = new CloudBillDetails(GuardSite(kSource, this), clientWidget());
    return m_details;
}

void TVelQddjjc::declareColumns()
{
    m_listModel->addColumn(QStringLiteral("序号"), QStringLiteral("xh"), 50, 5003);
    m_listModel->addColumn(QStringLiteral("项目编号"), QStringLiteral("xmbh"), 110, 5003);
    m_listModel->addColumn(QStringLiteral("项目名称"), QStringLiteral("xmmc"), 291, 5003);
    m_listModel->addColumn(QStringLiteral("单位"), QStringLiteral("dw"), 60, 5003);
    m_listModel->addColumn(QStringLiteral("综合单价"), QStringLiteral("zhdj"), 90, 5003);
    m_listModel->addColumn(QStringLiteral("偏差率"), QStringLiteral("pcl"), 80, 5003);
    m_listModel->addColumn(QStringLiteral("基准时间"), QStringLiteral("jzsj"), 120, 5003);
    m_listModel->addColumn(QStringLiteral("地点"), QStringLiteral("dd"), 120, 5003);
}

QLabel *TVelQddjjc::label(const QString &objectName) const
{
    return findChild<QLabel *>(objectName);
}

zTreeModel *TVelQddjjc::compositionModel() const
{
    return m_details->compositionModel();
}

zTreeView *TVelQddjjc::compositionView() const
{
    return m_details->compositionView();
}

zTabContent *TVelQddjjc::detailTabs() const
{
    return m_details;
}

QString TVelQddjjc::firstTabText() const
{
    return m_details ? m_details->firstTabText() : QString();
}

QString TVelQddjjc::projectInfoText() const
{
    return m_details ? m_details->projectInfoText() : QString();
}

void TVelQddjjc::setItemId(QString &id)
{
    m_itemId = id;
    emit signalItemIdChanged();
}

void TVelQddjjc::setItemName(QString &name)
{
    m_itemName = name;
    emit signalItemNameChanged();
}

void TVelQddjjc::setTime(QString &time)
{
    m_time = time;
    emit signalTimeChanged();
}

void TVelQddjjc::setPlace(QString &place)
{
    m_place = place;
    emit signalPlaceChanged();
}

void TVelQddjjc::setAltitude(QString &altitude)
{
    m_altitude = altitude;
    emit signalAltitudeChanged();
}

void TVelQddjjc::setJsType(QString &jsType)
{
    m_jsType = jsType;
    emit signalJsTypeChanged();
}

void TVelQddjjc::slotItemIdChanged()
{
    if (QLabel *l = label(QStringLiteral("lblXmbh")))
        l->setText(m_itemId);
}

void TVelQddjjc::slotItemNameChanged()
{
    setLblXmmcData(m_itemName);
}

void TVelQddjjc::slotTimeChanged()
{
    setLblSjsj(m_time);
}

void TVelQddjjc::slotPlaceChanged()
{
    setLblDdsj(m_place);
}

void TVelQddjjc::slotAltitudeChanged()
{
    setLblHbsj(m_altitude);
}

void TVelQddjjc::slotJsTypeChanged()
{
    setLblJssj(m_jsType);
}

void TVelQddjjc::setLblSjsj(const QString &text)
{
    if (QLabel *l = label(QStringLiteral("lblSjsj")))
        l->setText(PriceCheckInputs::timeOrThisMonth(text));
}

void TVelQddjjc::setLblDdsj(const QString &text)
{
    if (QLabel *l = label(QStringLiteral("lblDdsj")))
        l->setText(text.isEmpty() ? QStringLiteral("无") : text);
}

void TVelQddjjc::setLblHbsj(const QString &text)
{
    if (QLabel *l = label(QStringLiteral("lblHbsj")))
        l->setText(text);
}

void TVelQddjjc::setLblJssj(const QString &text)
{
    if (QLabel *l = label(QStringLiteral("lblJssj")))
        l->setText(text);
}

void TVelQddjjc::setLblXmmcData(const QString &text)
{
    if (QLabel *l = label(QStringLiteral("lblXmmcData")))
        l->setText(QString(text).remove(QLatin1Char('\n')).remove(QLatin1Char('\r')));
}

void TVelQddjjc::setZhdj(double zhdj)
{
    m_zhdj = zhdj;
}

void TVelQddjjc::setMatchNum(int matchNum)
{
    GUARDED(kSource, [&] {
        PriceCheckInputs inputs;
        inputs.setMatchNum(matchNum);
        if (m_comPpgs)
            m_comPpgs->setCurrentIndex(inputs.matchIndex());
    });
}

int TVelQddjjc::matchNum() const
{
    return m_comPpgs ? m_comPpgs->currentText().toInt() : 1;
}

void TVelQddjjc::SetCurQd(BaseDataItem *item)
{
    GUARDED(kSource, [&] {
        m_curQd = item;
        if (!m_details)
            return;
        const QString kind = item ? item->text(BaseDataItem::KindRole) : QString();
        m_details->setFirstTabName(PriceCheckDetails::firstTabName(kind));
    });
}

void TVelQddjjc::setXMxx(QString projectInfo, QString features, zStandardTreeNodeData *composition)
{
    GUARDED(kSource, [&] {
        if (m_details)
            m_details->showTexts(projectInfo, features, composition);
    });
}

void TVelQddjjc::setCloudDjData(QStringList &data)
{
    m_cloudData = data;
    emit signalCloudDjDataChanged();
}

void TVelQddjjc::clearResult()
{
    m_listModel->clearRows();
    m_details->clear();
    m_bills.clear();
    m_shown = -1;
}

bool TVelQddjjc::serverReady() const
{
    const LtdInfo *server = getCurrServer();
    return server && server->getServerLogin();
}

void TVelQddjjc::setZjData()
{
    GUARDED(kSource, [&] {
        if (!m_list)
            return;
        clearResult();
        if (m_cloudData.isEmpty() || !serverReady())
            return;
        QList<double> prices;
        for (const QString &text : qAsConst(m_cloudData)) {
            m_bills.append(CloudZjBean(text));
            prices.append(m_bills.last().getZhdj());
        }
        const PriceComparison comparison(m_zhdj, prices);
        for (int i = 0; i < m_bills.size(); ++i) {
            const CloudZjBean &bill = m_bills.at(i);
            m_listModel->addRow();
            m_listModel->appendCell(QStringLiteral("xh"), i + 1, 5004);
            m_listModel->appendCell(QStringLiteral("xmbh"), bill.getXmbh(), 5004);
            m_listModel->appendCell(QStringLiteral("xmmc"), bill.getXmmc(), 5004);
            m_listModel->appendCell(QStringLiteral("dw"), bill.getDw(), 5004);
            m_listModel->appendCell(QStringLiteral("zhdj"), comparison.priceText(i), 5005);
            m_listModel->appendCell(QStringLiteral("pcl"), comparison.deviationText(i), 5005);
            m_listModel->appendCell(QStringLiteral("jzsj"), bill.getJzsj(), 5004);
            m_listModel->appendCell(QStringLiteral("dd"), bill.getDd(), 5004);
        }
        appendSummaryRow(comparison);
        m_list->selectRowAt(0);
        connect(m_list, &zTableView::cellClicked, this, &TVelQddjjc::slotDetailXxData, Qt::UniqueConnection);
        slotDetailXxData(0);
    });
}

void TVelQddjjc::appendSummaryRow(const PriceComparison &comparison)
{
    const int row = m_listModel->addRow();
    const QList<QPair<QString, QString>> cells = {{QStringLiteral("xh"), kSummary},
                                                  {QStringLiteral("xmbh"), comparison.ownPriceText()},
                                                  {QStringLiteral("xmmc"), QStringLiteral("平均单价")},
                                                  {QStringLiteral("zhdj"), comparison.averageText()},
                                                  {QStringLiteral("pcl"), comparison.averageDeviationText()},
                                                  {QStringLiteral("jzsj"), QStringLiteral("-")}};
    for (const auto &cell : cells) {
        const bool number = cell.first == QLatin1String("zhdj") || cell.first == QLatin1String("pcl");
        m_listModel->appendCell(cell.first, cell.second, number ? 5005 : 5004);
        m_listModel->setCellForeground(row, cell.first, Qt::red);
    }
    m_listModel->setSpan(row, QStringLiteral("xmmc"), 1, 2);
    m_listModel->setSpan(row, QStringLiteral("jzsj"), 1, 2);
}

void TVelQddjjc::slotDetailXxData(int row, const QVariant &)
{
    GUARDED(kSource, [&] {
        if (!getCurrServer() || row == m_bills.size() || row < 0 || row > m_bills.size())
            return;
        m_shown = row;
        const CloudZjBean &bill = m_bills.at(row);
        const QString kind = m_curQd ? m_curQd->text(BaseDataItem::KindRole) : QString();
        m_details->showBill(bill, kind, PriceCheckDetails::projectInfoRequest(getCurrServer(), bill));
    });
}

void TVelQddjjc::slotCheck()
{
    GUARDED(kSource, [&] {
        LtdInfo *server = getCurrServer();
        if (!server) {
            showMessageBox(QStringLiteral("请选择服务器"), this);
            return;
        }
        int count = matchNum();
        emit signalGetQjyData(server, count);
    });
}

void TVelQddjjc::Modification()
{
    GUARDED(kSource, [&] {
        if (m_yxys)
            return;
        m_yxys = new TVelQddjjc_Yxys(this);
        m_yxys->CreateUI();
        m_yxys->setComSjText(m_time);
        m_yxys->setComDdText(m_place.isEmpty() ? QStringLiteral("无") : m_place);
        connect(m_yxys.data(), &InfluenceFactorDialog::signalTimeAndPath, this, &TVelQddjjc::slotTimeAndPathChanged);
        bool sync = false;
        ChildDialog::run(this, m_yxys, [&](int) { sync = m_yxys->isConfirmed() && m_yxys->getChecked(); });
        if (sync)
            emit signalYxysChanged(m_time, m_place == QStringLiteral("无") ? QString() : m_place);
    });
}

void TVelQddjjc::slotTimeAndPathChanged(const QString &sj, const QString &dd)
{
    GUARDED(kSource, [&] {
        QString time = sj;
        QString place = QString(dd).remove(QLatin1Char('\n'));
        setTime(time);
        setPlace(place);
    });
}

void TVelQddjjc::onBtnClose()
{
    GUARDED(kSource, [&] { close(); });
}

void TVelQddjjc::actCancel()
{
    onBtnClose();
}
