#include "veldqqdznzj.h"
#include "pricingmatch.h"

#include <pricecheck/cloudbilldetails.h>

#include <cloud/cloudasyncrequest.h>
#include <cloud/cloudexchange.h>
#include <cloud/cloudserverchoice.h>
#include <cloud/cloudsources.h>
#include <cloud/cloudworkerrequest.h>
#include <cloud/moduletitle.h>
#include <cloud/tveldqqdznzj_yxys.h>
#include <pricecheck/pricecheckdetails.h>

#include <hostapi/basedataitem.h>
#include <hostapi/childdialog.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/fymodel.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/jsmsbusiness.h>
#include <hostapi/messagebox.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/zfiltersearchbox.h>
#include <hostapi/zgroupheaderview.h>
#include <hostapi/zstandardtreenodedata.h>
#include <hostapi/ztabcontent.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>
#include <hostapi/ztreemodel.h>
#include <hostapi/ztreeview.h>

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMovie>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "VelDqqdznzj";

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}

QCheckBox *checkBox(const QString &text, const QString &name, QWidget *parent)
{
    auto *box = new QCheckBox(text, parent);
    box->setObjectName(name);
    return box;
}

QString billKind(const BaseDataItem *bill)
{
    return bill ? bill->text(BaseDataItem::KindRole) : QString();
}
}

VelDqqdznzj::VelDqqdznzj(QWidget *parent)
    : zTitleModal(parent)
{
    setScaledFixedSize(960, 678);
    OnlyClose();
    SetCaption(veloraModuleTitle());
    setBackgroundColor(QColor(QStringLiteral("#F5F7F9")));
    m_worker = new CloudWorkerRequest(GuardSite(kSource, this));
    connect(m_worker, &CloudWorkerRequest::signalReply, this, &VelDqqdznzj::workerReplied);
    connect(this, &VelDqqdznzj::signalZjUpdata, this, &VelDqqdznzj::slotZjUpdata, Qt::QueuedConnection);
}

void VelDqqdznzj::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_list)
            return;
        CloudSourcesOptions options;
        options.source = kSource;
        m_sources = new CloudSources(options, this);
        auto *body = new QVBoxLayout;
        body->setContentsMargins(px(12), px(8), px(12), px(14));
        body->setSpacing(px(8));
        body->addWidget(buildHeader());
        body->addWidget(m_sources->selectionRow());
        body->addWidget(buildSearchRow());
        body->addWidget(buildList());
        body->addWidget(buildDetails(), 1);
        clientLayout()->addLayout(body);

        connect(m_search, &zFilterSearchBox::signalSearch, this, &VelDqqdznzj::requestZjData);
        connect(m_btnZjpp, &QPushButton::clicked, this, &VelDqqdznzj::requestZjData);
        connect(m_btnXg, &QPushButton::clicked, this, &VelDqqdznzj::Modification);
        connect(m_btnPrevious, &QPushButton::clicked, this, &VelDqqdznzj::slotPrevious);
        connect(m_btnNext, &QPushButton::clicked, this, &VelDqqdznzj::slotNext);
        connect(m_list, &zTableView::signalButtonClicked, this, &VelDqqdznzj::slotChoose);
        connect(m_list, &zTableView::cellClicked, this, &VelDqqdznzj::slotDetailXxData);
        CloudServerChoice *choice = createServerChoice(m_comServer, GuardSite(kSource, this));
        m_sources->follow(choice);
        connect(choice, &CloudServerChoice::signalClearData, this, [this] { clearResult(); });
        choice->start();
        initData();
    });
}

QWidget *VelDqqdznzj::buildHeader()
{
    auto *header = new QWidget(clientWidget());
    header->setObjectName(QStringLiteral("widgetHeader"));
    auto caption = [header](const QString &text, const QString &name) {
        QLabel *l = WidgetFactory::label(text, name, header);
        l->setStyleSheet(QStringLiteral("color:#606266;"));
        return l;
    };
    m_lblQdbh = WidgetFactory::label(QString(), QStringLiteral("lblQdbh"), header);
    m_lblQdbh->setTextFormat(Qt::PlainText);
    m_lblQdbh->setStyleSheet(QStringLiteral("#lblQdbh{font-weight:bold;color:#2F7CF6;}"));
    m_lblQdmc = WidgetFactory::label(QString(), QStringLiteral("lblQdmc"), header);
    m_lblQdmc->setTextFormat(Qt::PlainText);
    m_lblQdmc->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_comServer = new CloudServerCombox(header);
    m_comServer->setObjectName(QStringLiteral("comServer"));
    m_comServer->setFixedSize(px(200), px(30));
    m_btnXg = WidgetFactory::button(QStringLiteral("影响因素"), QStringLiteral("btnXg"), header);
    m_btnXg->setCursor(Qt::PointingHandCursor);
    m_btnXg->setStyleSheet(QStringLiteral("#btnXg{color:#2F7CF6;border:none;background:transparent;padding:0;}"
                                          "#btnXg:hover{text-decoration:underline;}"));
    m_btnPrevious = WidgetFactory::iconButton(QStringLiteral("btnPrevious"), QStringLiteral(":/Image/Velostra/lastqd.svg"),
                                QStringLiteral(":/Image/Velostra/lastqd-HOVER.svg"), header);
    m_btnNext = WidgetFactory::iconButton(QStringLiteral("btnNext"), QStringLiteral(":/Image/Velostra/nextqd.svg"),
                            QStringLiteral(":/Image/Velostra/nextqd-HOVER.svg"), header);

    auto *bill = new QHBoxLayout;
    bill->setSpacing(px(6));
    bill->addWidget(caption(QStringLiteral("当前清单："), QStringLiteral("lblDqqd")));
    bill->addWidget(m_lblQdbh);
    bill->addWidget(m_lblQdmc, 1);
    bill->addWidget(m_btnPrevious);
    bill->addWidget(m_btnNext);
    auto *source = new QHBoxLayout;
    source->setSpacing(px(6));
    source->addWidget(caption(QStringLiteral("组价服务器:"), QStringLiteral("lblZjfwq")));
    source->addWidget(m_comServer);
    source->addSpacing(px(16));
    source->addWidget(caption(QStringLiteral("组价来源:"), QStringLiteral("lblZjly")));
    source->addWidget(m_sources->sourcesRow(), 1);
    source->addWidget(m_btnXg);
    auto *layout = new QVBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(px(8));
    layout->addLayout(bill);
    layout->addLayout(source);
    return header;
}

QWidget *VelDqqdznzj::buildSearchRow()
{
    auto *row = new QWidget(clientWidget());
    row->setObjectName(QStringLiteral("widgetSearch"));
    m_search = new zFilterSearchBox(row);
    m_search->setObjectName(QStringLiteral("searchQd"));
    m_search->setLabelText(QStringLiteral("清单关键词"));
    m_search->setPlaceholderText(QStringLiteral("输入关键词"));
    m_search->setButtonText(QStringLiteral("搜索"));
    m_search->setFixedWidth(px(330));
    m_btnZjpp = WidgetFactory::button(QStringLiteral("组价匹配"), QStringLiteral("btnZjpp"), row, 80, 28);
    m_btnZjpp->setStyleSheet(QStringLiteral("#btnZjpp{background:#2F7CF6;color:white;border:none;border-radius:3px;}"));
    m_chkTgyydj = checkBox(QStringLiteral("跳过已有单价清单"), QStringLiteral("chkTgyydj"), row);
    m_chkTh = checkBox(QStringLiteral("选用时替换项目特征"), QStringLiteral("chkTh"), row);
    m_chkZdpp = checkBox(QStringLiteral("自动匹配"), QStringLiteral("chkZdpp"), row);
    m_chkZdpp->setChecked(true);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(px(10));
    layout->addWidget(m_search);
    layout->addWidget(m_btnZjpp);
    layout->addStretch();
    layout->addWidget(m_chkTgyydj);
    layout->addWidget(m_chkTh);
    layout->addWidget(m_chkZdpp);
    return row;
}

QWidget *VelDqqdznzj::buildList()
{
    m_listModel = new zTableModel(this);
    m_listModel->addColumn(QStringLiteral("序号"), QStringLiteral("xh"), 50, 5003);
    m_listModel->addColumn(QStringLiteral("项目编号"), QStringLiteral("xmbh"), 120, 5003);
    m_listModel->addColumn(QStringLiteral("项目名称"), QStringLiteral("xmmc"), 431, 5003);
    m_listModel->addColumn(QStringLiteral("单位"), QStringLiteral("dw"), 120, 5003);
    m_listModel->addColumn(QStringLiteral("综合单价"), QStringLiteral("zhdj"), 140, 5003);
    m_listModel->addColumn(QStringLiteral("操作"), QStringLiteral("cz"), 59, 5003);
    m_list = new zTableView(clientWidget());
    m_list->setObjectName(QStringLiteral("wdtList"));
    m_list->setStyleSheet(QStringLiteral("QTableView{border:1px solid #E3E5E8; border-bottom:0px;}"));
    m_list->setModel(m_listModel);
    m_list->setHeaderHeight(28);
    m_list->verticalHeader()->hide();
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setFixedHeight(px(210));
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_lblLoading = new QLabel(m_list);
    m_lblLoading->setObjectName(QStringLiteral("lblLoading"));
    m_movie = new QMovie(QStringLiteral(":/Image/Velostra/loading-YFAUpdata.gif"), QByteArray(), m_lblLoading);
    m_lblLoading->setMovie(m_movie);
    m_lblLoading->hide();
    return m_list;
}

QWidget *VelDqqdznzj::buildDetails()
{
    m_details = new CloudBillDetails(GuardSite(kSource, this), clientWidget());
    return m_details;
}

void VelDqqdznzj::initData()
{
    GUARDED(kSource, [&] {
        if (m_sources) {
            m_sources->setSjkm(m_sjkm);
            m_sources->setUnitWork(m_unitWork);
            m_sources->setCurrJjb(m_table);
        }
    });
}

void VelDqqdznzj::setCurrJjb(JJBTableBase *table)
{
    m_table = table;
    initData();
}

void VelDqqdznzj::setUnitWork(WorkBaseObject *unitWork)
{
    m_unitWork = unitWork;
    initData();
}

void VelDqqdznzj::setSjkm(QString sjkm)
{
    m_sjkm = sjkm;
    initData();
}

void VelDqqdznzj::setAutoMatch()
{
    if (m_chkZdpp)
        m_chkZdpp->setChecked(false);
}

void VelDqqdznzj::setGcTypeChecked()
{
    if (m_sources)
        m_sources->readChecks();
}

void VelDqqdznzj::setCurrQd(BaseDataItem *item)
{
    GUARDED(kSource, [&] {
        m_curQd = item;
        if (!m_list)
            return;
        m_lblQdbh->setText(item ? item->text(BaseDataItem::CodeRole) : QString());
        m_lblQdmc->setText(item ? item->text(BaseDataItem::NameRole).simplified() : QString());
        const QString first = PriceCheckDetails::firstTabName(billKind(item));
        m_chkTh->setText(QStringLiteral("选用时替换") + first);
        m_details->setFirstTabName(first);
        clearResult();
        if (m_chkZdpp->isChecked()) {
            m_search->clear();
            requestZjData();
        }
    });
}

void VelDqqdznzj::clearResult()
{
    m_listModel->clearRows();
    m_details->clear();
    m_reply = PricingMatchReply();
    m_shown = -1;
}

bool VelDqqdznzj::isLoading() const
{
    return m_lblLoading && !m_lblLoading->isHidden();
}

void VelDqqdznzj::setLoading(bool loading)
{
    titleBar()->setEnabled(!loading);
    if (!loading) {
        m_movie->stop();
        m_lblLoading->hide();
        return;
    }
    m_movie->start();
    m_lblLoading->adjustSize();
    m_lblLoading->move((m_list->width() - m_lblLoading->width()) / 2, (m_list->height() - m_lblLoading->height()) / 2);
    m_lblLoading->show();
    m_lblLoading->raise();
}

bool VelDqqdznzj::passesGuards()
{
    if (!getCurrServer()) {
        showMessageBox(QStringLiteral("请选择服务器"), this);
        return false;
    }
    if (!m_sources->checkSource() || !PricingMatch::canMatch(m_curQd))
        return false;
    if (PricingMatch::isOrganisationMeasure(m_curQd, m_table)) {
        showMessage(QStringLiteral("提示"), QStringLiteral("当前清单是组织措施项目，不能使用该功能"),
                    {QStringLiteral("确定")}, this);
        return false;
    }
    return true;
}

void VelDqqdznzj::requestZjData()
{
    GUARDED(kSource, [&] {
        if (!m_list || !passesGuards())
            return;
        clearResult();
        setLoading(true);
        PricingMatch match;
        JsMsBusiness::GetQDSaveAttr(m_unitWork, m_table, match.attributes);
        match.qdly = m_sources->mode();
        match.projectIds = m_sources->projectIds();
        match.keyword = m_search->text();
        const unsigned generation = ++m_generation;
        const unsigned sequence = m_worker->start(match.request(getCurrServer(), m_curQd));
        m_pending.insert(sequence, qMakePair(generation, m_curQd));
    });
}

void VelDqqdznzj::workerReplied(unsigned sequence, const CloudReply &)
{
    const QPair<unsigned, BaseDataItem *> request = m_pending.take(sequence);
    m_pending.clear();
    if (request.first != 0)
        emit signalZjUpdata(int(request.first), request.second);
}

void VelDqqdznzj::slotZjUpdata(int generation, BaseDataItem *bill)
{
    GUARDED(kSource, [&] {
        if (generation <= 0 || unsigned(generation) != m_generation || bill != m_curQd)
            return;
        const CloudReply reply = m_worker->lastReply();
        setLoading(false);
        if (!reply.succeeded()) {
            showMessageBox(reply.answered() ? reply.msg() : QStringLiteral("云端未响应"), this);
            return;
        }
        m_reply = PricingMatchReply(reply.dataArray());
        fillList();
    });
}

void VelDqqdznzj::fillList()
{
    for (int i = 0; i < m_reply.size(); ++i) {
        const CloudZjBean &bill = m_reply.bill(i);
        m_listModel->addRow();
        m_listModel->appendCell(QStringLiteral("xh"), i + 1, 5004);
        m_listModel->appendCell(QStringLiteral("xmbh"), bill.getXmbh(), 5004);
        m_listModel->appendCell(QStringLiteral("xmmc"), bill.getXmmc(), 5004);
        m_listModel->appendCell(QStringLiteral("dw"), bill.getDw(), 5004);
        m_listModel->appendCell(QStringLiteral("zhdj"), QString::number(bill.getZhdj(), 'f', 2), 5005);
        m_listModel->appendCell(QStringLiteral("cz"), QStringLiteral("选用"), 5007);
    }
    if (m_reply.size() == 0)
        return;
    m_list->selectRowAt(0);
    slotDetailXxData(0);
}

void VelDqqdznzj::slotDetailXxData(int row, const QVariant &)
{
    GUARDED(kSource, [&] {
        if (!getCurrServer() || row < 0 || row >= m_reply.size())
            return;
        m_shown = row;
        const CloudZjBean &bill = m_reply.bill(row);
        m_details->showBill(bill, billKind(m_curQd), PricingMatch::projectInfoRequest(getCurrServer(), bill));
    });
}

zTreeModel *VelDqqdznzj::compositionModel() const
{
    return m_details->compositionModel();
}

zTabContent *VelDqqdznzj::detailTabs() const
{
    return m_details;
}

QString VelDqqdznzj::firstTabText() const
{
    return m_details ? m_details->firstTabText() : QString();
}

QString VelDqqdznzj::projectInfoText() const
{
    return m_details ? m_details->projectInfoText() : QString();
}

void VelDqqdznzj::slotChoose(const QModelIndex &index)
{
    GUARDED(kSource, [&] {
        const int row = index.row();
        if (!m_reply.contains(row))
            return;
        QJsonObject bill = m_reply.object(row);
        emit signalZjChecked(bill, m_chkTh->isChecked());
    });
}

void VelDqqdznzj::stopPending()
{
    m_generation = 0;
    m_pending.clear();
    m_worker->discardPending();
    setLoading(false);
    m_search->clear();
}

void VelDqqdznzj::slotPrevious()
{
    GUARDED(kSource, [&] {
        stopPending();
        emit signalPreviousPage(m_chkTgyydj->isChecked());
    });
}

void VelDqqdznzj::slotNext()
{
    GUARDED(kSource, [&] {
        stopPending();
        emit signalNextPage(m_chkTgyydj->isChecked());
    });
}

void VelDqqdznzj::Modification()
{
    GUARDED(kSource, [&] {
        if (m_yxys)
            return;
        CloudAsyncRequest::listen(this, &VelDqqdznzj::slotRequestXgServer);
        CloudAsyncRequest::send(CloudRequest::withoutToken(QStringLiteral("personchapterinfoforuploadqd")));
        const ProjectSettingsInfo settings = ProjectSettingHelper::GetProjectSettingsInfo();
        m_yxys = new TVelDqqdznzj_Yxys(this);
        m_yxys->CreateUI();
        m_yxys->setComSjText(settings.time);
        m_yxys->setComDdText(settings.place.isEmpty() ? QStringLiteral("无") : settings.place);
        connect(m_yxys->timeButton(), &QPushButton::clicked, m_yxys.data(), &InfluenceFactorDialog::pickTime);
        connect(m_yxys->placeButton(), &QPushButton::clicked, m_yxys.data(), &InfluenceFactorDialog::pickPlace);
        connect(m_yxys->clearButton(), &QPushButton::clicked, m_yxys.data(), &InfluenceFactorDialog::clearPlace);
        connect(m_yxys->confirmButton(), &QPushButton::clicked, m_yxys.data(), &InfluenceFactorDialog::confirm);
        QString time = settings.time;
        QString place = settings.place;
        connect(m_yxys.data(), &InfluenceFactorDialog::signalTimeAndPath, this,
                [&time, &place](const QString &sj, const QString &dd) {
                    time = sj;
                    place = QString(dd).remove(QLatin1Char('\n'));
                });
        bool sync = false;
        QPointer<VelDqqdznzj> self(this);
        ChildDialog::run(this, m_yxys, [&](int) { sync = m_yxys->isConfirmed() && m_yxys->getChecked(); });
        if (self && sync)
            emit signalYxysChanged(time, place == QStringLiteral("无") ? QString() : place);
    });
}

void VelDqqdznzj::slotRequestXgServer(const QJsonObject &reply)
{
    GUARDED(kSource, [&] {
        // The user's own bill libraries, for the upload offered after pricing.
        if (reply.value(QStringLiteral("code")).toInt(-1) == 0)
            m_libraries = reply.value(QStringLiteral("data")).toArray().toVariantList();
    });
}
