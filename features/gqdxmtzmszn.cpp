#include "gqdxmtzmszn.h"
#include "customitemdelegate.h"
#include "featurecloudreply.h"
#include "featuregrid.h"
#include "featuregridlayout.h"
#include "gclqdxmszn_xmxx.h"
#include "gclqdxmtz_txtz.h"

#include <cloud/cloudsources.h>
#include <cloud/cloudworkerrequest.h>

#include <hostapi/apptype.h>
#include <hostapi/basedataitem.h>
#include <hostapi/buttonrow.h>
#include <hostapi/childdialog.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/cpfmain.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/hostconfig.h>
#include <hostapi/hostconstants.h>
#include <hostapi/hostlog.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/messagebox.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/zfiltersearchbox.h>

#include <QCheckBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QMovie>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

namespace {
const char kSource[] = "..\\Gclqdxmttzmszn";
const QString kAppCloseKey = QStringLiteral("CloudApp/MSZN_AppClose");
const QString kIcons = QStringLiteral(":/Image/Velostra/");

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}

QString itemText(const BaseDataItem *item, bool workContent)
{
    return item->text(workContent ? BaseDataItem::WorkContentRole : BaseDataItem::FeaturesRole);
}
}

Gqdxmtzmszn::Gqdxmtzmszn(QWidget *parent)
    : zTitleModal(parent)
{
    OnlyClose();
    setModal(false);
    setScaledFixedSize(960, 678);
    SetCaption(windowTitle(AppType()));
    CreateUI();
    initData();
    setconnect();
}

QString Gqdxmtzmszn::windowTitle(int appType)
{
    return appType == 16 ? QStringLiteral("工程量清单项目特征/工程内容描述指南")
                         : QStringLiteral("工程量清单项目特征描述指南");
}

bool Gqdxmtzmszn::isWorkContentItem(const BaseDataItem *item)
{
    const QString kind = item ? item->text(BaseDataItem::KindRole).toUpper() : QString();
    return kind == CXMZJXQDAEnName || kind == CXMZJXQDBEnName;
}

bool Gqdxmtzmszn::cloudOffered(const QString &areaVersion)
{
    return !areaVersion.contains(QLatin1String("JL")) && !areaVersion.contains(QLatin1String("YN"));
}

void Gqdxmtzmszn::CreateUI()
{
    QWidget *client = clientWidget();
    m_gdTableMszn = new FeatureGrid(QStringLiteral("gdTableMszn"), client);
    m_gdTableMszn->horizontalHeader()->setStyleSheet(QStringLiteral("QHeaderView{border: 0px;background-color:white;}"));
    m_stack = new QStackedWidget(client);
    m_stack->addWidget(m_gdTableMszn);
    m_stack->addWidget(buildCloudPage());
    m_lblEdit = WidgetFactory::label(QStringLiteral("项目特征:"), QStringLiteral("lblXmtz"), client);
    m_edit = new QTextEdit(client);
    m_edit->setObjectName(QStringLiteral("edtXmtz"));
    m_edit->setAcceptRichText(false);
    m_edit->setFixedHeight(px(110));

    auto *body = new QVBoxLayout;
    body->setContentsMargins(px(16), px(6), px(16), px(12));
    body->setSpacing(px(8));
    body->addLayout(buildHeader());
    body->addWidget(m_cloudBar);
    body->addWidget(m_sources->selectionRow());
    body->addWidget(m_stack, 1);
    body->addLayout(buildPaging());
    body->addWidget(m_lblEdit);
    body->addWidget(m_edit);
    body->addLayout(buildButtons());
    clientLayout()->addLayout(body);
    startServerChoice(findChild<CloudServerCombox *>(QStringLiteral("comServer")), GuardSite(kSource, this));
    m_tzWorker = new CloudWorkerRequest(GuardSite(kSource, this));
    m_gcslWorker = new CloudWorkerRequest(GuardSite(kSource, this));
    applyMode();
}

QLayout *Gqdxmtzmszn::buildHeader()
{
    QWidget *client = clientWidget();
    m_lblItem = WidgetFactory::label(QString(), QStringLiteral("lblXmbhmc"), client);
    QFont bold = m_lblItem->font();
    bold.setBold(true);
    m_lblItem->setFont(bold);
    auto *previous = WidgetFactory::button(QString(), QStringLiteral("btnLastQd"), client, 24, 24);
    previous->setIcon(WidgetFactory::icon(kIcons + QStringLiteral("lastqd.svg")));
    previous->setToolTip(QStringLiteral("上一条清单"));
    auto *next = WidgetFactory::button(QString(), QStringLiteral("btnNextQd"), client, 24, 24);
    next->setIcon(WidgetFactory::icon(kIcons + QStringLiteral("nextqd.svg")));
    next->setToolTip(QStringLiteral("下一条清单"));
    for (QPushButton *b : {previous, next})
        b->setStyleSheet(QStringLiteral("QPushButton{border:none;background:transparent;}"));
    m_rbLocal = new QRadioButton(QStringLiteral("本地特征库"), client);
    m_rbLocal->setObjectName(QStringLiteral("rbLocal"));
    m_rbLocal->setChecked(true);
    m_rbCloud = new QRadioButton(QStringLiteral("云服务器"), client);
    m_rbCloud->setObjectName(QStringLiteral("rbCloud"));
    auto *combo = new CloudServerCombox(client);
    combo->setObjectName(QStringLiteral("comServer"));
    combo->setFixedSize(px(200), px(30));

    auto *row = new QHBoxLayout;
    row->setSpacing(px(10));
    row->addWidget(previous);
    row->addWidget(next);
    row->addWidget(m_lblItem, 1);
    row->addWidget(m_rbLocal);
    row->addWidget(m_rbCloud);
    row->addWidget(combo);
    m_rbCloud->setVisible(cloudOffered(CpfMain::GetAreaConfigValue(QStringLiteral("AreaVer"))));
    combo->setVisible(m_rbCloud->isVisibleTo(this));
    connect(previous, &QPushButton::clicked, this, &Gqdxmtzmszn::ObtainLastRow);
    connect(next, &QPushButton::clicked, this, &Gqdxmtzmszn::ObtainNextRow);
    return row;
}

QWidget *Gqdxmtzmszn::buildCloudPage()
{
    QWidget *client = clientWidget();
    CloudSourcesOptions options;
    options.source = kSource;
    options.filterText = QStringLiteral("(筛选)");
    options.initialMode = 3;
    options.checkStorage = CloudSourcesOptions::CheckStorage::None;
    m_sources = new CloudSources(options, this);
    m_lblSource = WidgetFactory::label(QStringLiteral("特征来源:"), QStringLiteral("lblTzly"), client);
    m_search = new zFilterSearchBox(client);
    m_search->setObjectName(QStringLiteral("searchXmtz"));
    m_search->setButtonText(QStringLiteral("搜索"));
    m_search->setFixedWidth(px(360));
    m_cloudBar = new QWidget(client);
    auto *bar = new QHBoxLayout(m_cloudBar);
    bar->setContentsMargins(0, 0, 0, 0);
    bar->addWidget(m_lblSource);
    bar->addWidget(m_sources->sourcesRow(), 1);
    bar->addWidget(m_search);

    auto *page = new QWidget(client);
    m_libraries = new QListWidget(page);
    m_libraries->setObjectName(QStringLiteral("LQMCNSListWidget"));
    m_libraries->setFixedWidth(px(170));
    m_gdCloudTabMszn = new FeatureGrid(QStringLiteral("gdCloudTabMszn"), page);
    m_gdCloudTabMszn->setItemDelegate(new CustomItemDelegate(m_gdCloudTabMszn));
    auto *layout = new QHBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(px(8));
    layout->addWidget(m_libraries);
    layout->addWidget(m_gdCloudTabMszn, 1);
    return page;
}

QPushButton *Gqdxmtzmszn::pageButton(const QString &name, const QString &disabled, const QString &normal,
                                     const QString &hover)
{
    QPushButton *button = WidgetFactory::button(QString(), name, clientWidget(), 24, 24);
    button->setIcon(WidgetFactory::icon(kIcons + normal, kIcons + disabled, kIcons + hover));
    button->setIconSize(QSize(px(22), px(22)));
    button->setStyleSheet(QStringLiteral("QPushButton{border:none;background:transparent;}"));
    button->setEnabled(false);
    return button;
}

QLayout *Gqdxmtzmszn::buildPaging()
{
    m_btnFirst = pageButton(QStringLiteral("btnFirst"), "S_XS-D.svg", "S_XS.svg", "S_S.svg");
    m_btnPrevious = pageButton(QStringLiteral("btnPrevious"), "S_XTX-D.svg", "S_XTX.svg", "S_X.svg");
    m_btnNext = pageButton(QStringLiteral("btnNext"), "S_XDS-D.svg", "S_XDS.svg", "S_SS.svg");
    m_btnLast = pageButton(QStringLiteral("btnLast"), "S_XSX-D.svg", "S_XSX.svg", "S_SX.svg");
    m_loading = new QLabel(clientWidget());
    m_loading->setObjectName(QStringLiteral("lblLoading"));
    auto *movie = new QMovie(kIcons + QStringLiteral("loading-YFAUpdata.gif"), QByteArray(), m_loading);
    m_loading->setMovie(movie);
    m_loading->hide();
    m_chkSkip = new QCheckBox(QStringLiteral("跳过已有单价清单"), clientWidget());
    m_chkSkip->setObjectName(QStringLiteral("chkTgyydjqd"));
    auto *row = new QHBoxLayout;
    row->setSpacing(px(6));
    row->addStretch();
    for (QPushButton *b : pageButtons())
        row->addWidget(b);
    row->addWidget(m_loading);
    row->addStretch();
    row->addWidget(m_chkSkip);
    return row;
}

QLayout *Gqdxmtzmszn::buildButtons()
{
    auto *row = new ButtonRow(clientWidget());
    m_btnDelete = WidgetFactory::button(QStringLiteral("删除当前自编描述"), QStringLiteral("btnScdqzbms"), clientWidget());
    m_btnEdit = WidgetFactory::button(QStringLiteral("修改当前自编描述"), QStringLiteral("btnXgdqzbms"), clientWidget());
    row->addLeading(m_btnDelete);
    row->addLeading(m_btnEdit);
    m_chkAppClose = new QCheckBox(QStringLiteral("应用后关闭"), clientWidget());
    m_chkAppClose->setObjectName(QStringLiteral("chkYyhgb"));
    row->addLeading(m_chkAppClose);
    row->setButtonSize(80, 30);
    const QList<QPair<QString, QString>> buttons{{"规范特征", "btnGftz"}, {"填写提示", "btnTxts"}, {"还原", "btnHy"},
                                               {"应用", "btnYy"},       {"关闭", "btnGb"}};
    for (const auto &b : buttons) {
        row->addGap(6);
        row->addButton(b.first, b.second);
    }
    m_btnYy = button(QStringLiteral("btnYy"));
    m_btnHy = button(QStringLiteral("btnHy"));
    setCustomButtonsVisible(false);
    return row;
}

QList<QPushButton *> Gqdxmtzmszn::pageButtons() const
{
    return {m_btnFirst, m_btnPrevious, m_btnNext, m_btnLast};
}

QPushButton *Gqdxmtzmszn::button(const QString &name) const
{
    return findChild<QPushButton *>(name);
}

void Gqdxmtzmszn::initData()
{
    GUARDED(kSource, [&] {
        const auto settings = HostConfig::openSysSet();
        m_chkAppClose->setChecked(settings->value(kAppCloseKey).toString() == QLatin1String("1"));
    });
}

void Gqdxmtzmszn::setconnect()
{
    GUARDED(kSource, [&] {
        connect(m_rbLocal, &QRadioButton::toggled, this, &Gqdxmtzmszn::sourceChanged);
        connect(m_gdTableMszn, &QTableWidget::cellClicked, this, &Gqdxmtzmszn::localCellClicked);
        connect(m_gdCloudTabMszn, &QTableWidget::cellClicked, this,
                [this](int row, int column) { selectCloudResult(row - 1, column); });
        connect(m_gdCloudTabMszn, &FeatureGrid::resultClicked, this, &Gqdxmtzmszn::selectCloudResult);
        connect(m_gdCloudTabMszn, &FeatureGrid::sourceClicked, this, &Gqdxmtzmszn::requestProjectInfo);
        connect(m_btnFirst, &QPushButton::clicked, this, &Gqdxmtzmszn::FirstPage);
        connect(m_btnPrevious, &QPushButton::clicked, this, &Gqdxmtzmszn::PreviousPage);
        connect(m_btnNext, &QPushButton::clicked, this, &Gqdxmtzmszn::NextPage);
        connect(m_btnLast, &QPushButton::clicked, this, &Gqdxmtzmszn::LastPage);
        connect(m_search, &zFilterSearchBox::signalSearch, this, &Gqdxmtzmszn::slotBtnGrySsClicked);
        connect(m_edit, &QTextEdit::textChanged, this, &Gqdxmtzmszn::btnState);
        connect(m_chkAppClose, &QCheckBox::toggled, this, &Gqdxmtzmszn::writeAppClose);
        connect(m_btnDelete, &QPushButton::clicked, this, &Gqdxmtzmszn::DeleteCustomLine);
        connect(m_btnEdit, &QPushButton::clicked, this, &Gqdxmtzmszn::EditCustomLine);
        connect(button(QStringLiteral("btnGftz")), &QPushButton::clicked, this, &Gqdxmtzmszn::GfButton);
        connect(button(QStringLiteral("btnTxts")), &QPushButton::clicked, this, &Gqdxmtzmszn::TsButton);
        connect(m_btnHy, &QPushButton::clicked, this, &Gqdxmtzmszn::HyButton);
        connect(m_btnYy, &QPushButton::clicked, this, &Gqdxmtzmszn::YyButton);
        connect(button(QStringLiteral("btnGb")), &QPushButton::clicked, this, &Gqdxmtzmszn::GbButton);
        connect(serverChoice(), &CloudServerChoice::signalClearData, this, &Gqdxmtzmszn::resetLogin);
        connect(serverChoice(), &CloudServerChoice::signalServersReset, this, &Gqdxmtzmszn::resetLogin);
        m_sources->follow(serverChoice());
        connect(m_tzWorker, &CloudWorkerRequest::signalReply, this, [this](unsigned number, const CloudReply &reply) {
            m_tzReply = reply.object();
            emit signalUpdataTzData(int(number));
        });
        connect(m_gcslWorker, &CloudWorkerRequest::signalReply, this, [this](unsigned number, const CloudReply &reply) {
            m_gcslReply = reply.object();
            emit signalUpdataGcslData(int(number));
        });
        connect(this, &Gqdxmtzmszn::signalUpdataTzData, this, &Gqdxmtzmszn::slotUpdataTzData);
        connect(this, &Gqdxmtzmszn::signalUpdataGcslData, this, &Gqdxmtzmszn::slotUpdataGcslData);
    });
}

void Gqdxmtzmszn::setCurrQd(BaseDataItem *item)
{
    GUARDED(kSource, [&] {
        m_item = item;
        if (!item)
            return;
        const QString library = FeatureStore::libraryOf(item->text(BaseDataItem::KindRole));
        if (!library.isEmpty()) {
            m_libraryPath = FeatureStore::libraryPath(library);
            m_specialtyTable = FeatureStore::specialtyTable(library, item->text(BaseDataItem::CodeRole));
        }
        m_workContent = isWorkContentItem(item);
        applyMode();
        setTabData(item->text(BaseDataItem::CodeRole) + QStringLiteral("  ") + item->text(BaseDataItem::NameRole));
        QString text = itemText(item, m_workContent);
        setData(text);
        QString id = QString::number(item->GetID());
        setItemId(id);
        QString name = item->text(BaseDataItem::NameRole);
        setItemName(name);
        NotEditable(item->IsReadOnly());
        setXmbhmc(item);
        sourceChanged();
    });
}

void Gqdxmtzmszn::applyMode()
{
    m_lblEdit->setText(m_workContent ? QStringLiteral("工程内容:") : QStringLiteral("项目特征:"));
    m_lblSource->setText(m_workContent ? QStringLiteral("内容来源") : QStringLiteral("特征来源:"));
    m_search->setPlaceholderText(m_workContent ? QStringLiteral("请输入项目名称/工程内容")
                                               : QStringLiteral("请输入项目名称/项目特征"));
}

void Gqdxmtzmszn::setXmbhmc(BaseDataItem *item)
{
    GUARDED(kSource, [&] {
        for (QPushButton *b : pageButtons())
            b->setEnabled(false);
        m_search->clear();
        setCustomButtonsVisible(false);
        m_gdTableMszn->clearContents();
        m_gdTableMszn->setRowCount(0);
        m_lines.clear();
        m_lineCount = 0;
        m_localPage = 0;
        m_hint.clear();
        if (!item || item->IsReadOnly())
            return;
        m_code = FeatureStore::itemCode(item->text(BaseDataItem::CodeRole));
        FeatureStore::ensureTables();
        m_customTable = FeatureStore::customTable(m_libraryPath, m_customTable);
        if (m_libraryPath.isEmpty())
            return;
        const FeatureStore::Lines lines = FeatureStore::loadLines(m_libraryPath, m_customTable, m_code);
        m_lineCount = lines.count;
        m_hint = lines.hint;
        m_lines = lines.entries;
        if (m_lineCount == 0)
            return;
        showLocalPage(0, FeatureGridLayout::rowCount(m_lineCount));
    });
}

void Gqdxmtzmszn::showLocalPage(int page, int rows)
{
    m_localPage = page;
    m_gdTableMszn->reset(rows);
    const int first = page * FeatureGridLayout::EntriesPerPage;
    for (int line = 0; line < FeatureGridLayout::LinesPerPage; ++line) {
        const int entry = first + 2 * line;
        if (entry + 1 >= m_lines.size() || FeatureGridLayout::codeRow(line) >= rows)
            break;
        m_gdTableMszn->placeLine(line, m_lines.at(entry), m_lines.at(entry + 1));
    }
    refitLater();
    setLocalPagingEnabled();
}

void Gqdxmtzmszn::setLocalPagingEnabled()
{
    const int pages = FeatureGridLayout::pageCount(m_lines.size());
    const bool more = m_localPage < pages - 1;
    m_btnNext->setEnabled(more);
    m_btnLast->setEnabled(more);
    m_btnFirst->setEnabled(m_localPage > 0);
    m_btnPrevious->setEnabled(m_localPage > 0);
}

void Gqdxmtzmszn::localCellClicked(int row, int column)
{
    GUARDED(kSource, [&] {
        const int codeRow = row - row % 2;
        QTableWidgetItem *code = m_gdTableMszn->item(codeRow, column);
        QTableWidgetItem *text = m_gdTableMszn->item(codeRow + 1, column);
        const bool custom = code && FeatureStore::isCustomCode(code->text());
        setCustomButtonsVisible(custom);
        if (!text || text->text().trimmed().isEmpty())
            return;
        m_selectedText = text->text();
        if (row % 2 == 1)
            m_edit->setPlainText(m_selectedText);
    });
}

void Gqdxmtzmszn::setCustomButtonsVisible(bool visible)
{
    m_btnDelete->setVisible(visible);
    m_btnEdit->setVisible(visible);
}

void Gqdxmtzmszn::sourceChanged()
{
    GUARDED(kSource, [&] {
        const bool cloud = m_rbCloud->isChecked();
        m_stack->setCurrentIndex(cloud ? 1 : 0);
        refitLater();
        m_cloudBar->setVisible(cloud);
        if (cloud)
            m_sources->setGcCheckedName();
        else
            m_sources->selectionRow()->hide();
        setCustomButtonsVisible(false);
        if (!cloud) {
            if (m_lineCount > 0)
                setLocalPagingEnabled();
            return;
        }
        for (QPushButton *b : pageButtons())
            b->setEnabled(false);
        m_cloudPage = 1;
        requestTzData();
    });
}

void Gqdxmtzmszn::setData(QString &text)
{
    GUARDED(kSource, [&] {
        m_data = text;
        m_edit->setPlainText(text);
        btnState();
        emit signalDataChanged();
    });
}

void Gqdxmtzmszn::setItemId(QString &id)
{
    m_itemId = id;
    emit signalItemIdChanged();
}

void Gqdxmtzmszn::setItemName(QString &name)
{
    m_itemName = name;
    emit signalItemNameChanged();
}

void Gqdxmtzmszn::setTabData(const QString &text)
{
    QString plain = text;
    m_lblItem->setText(plain.remove(QLatin1Char('\n')).remove(QLatin1Char('\r')));
}

void Gqdxmtzmszn::setCurrJjb(JJBTableBase *table)
{
    m_table = table;
    m_sources->setCurrJjb(table);
}

void Gqdxmtzmszn::setUnitWork(WorkBaseObject *unitWork)
{
    m_unitWork = unitWork;
    m_sources->setUnitWork(unitWork);
}

void Gqdxmtzmszn::setSjkm(QString sjkm)
{
    m_sjkm = sjkm;
    m_sources->setSjkm(sjkm);
}

void Gqdxmtzmszn::NotEditable(bool readOnly)
{
    m_readOnly = readOnly;
    m_edit->setReadOnly(readOnly);
    btnState();
}

void Gqdxmtzmszn::btnState()
{
    const bool changed = !m_readOnly && m_item && m_edit->toPlainText() != m_data;
    m_btnYy->setEnabled(changed);
    m_btnHy->setEnabled(changed);
}

void Gqdxmtzmszn::clearYtz()
{
    m_edit->clear();
}

void Gqdxmtzmszn::currQdYtzUpdata()
{
    GUARDED(kSource, [&] {
        if (!m_item)
            return;
        QString text = itemText(m_item, m_workContent);
        setData(text);
    });
}

void Gqdxmtzmszn::emptySearchValue()
{
    m_search->clear();
}

void Gqdxmtzmszn::readGcid()
{
    m_sources->readGcid();
}

void Gqdxmtzmszn::YyButton()
{
    GUARDED(kSource, [&] {
        const QString text = m_edit->toPlainText();
        m_data = text;
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(m_table, 8, QStringLiteral("修改项目特征")));
        emit Uptext(text);
        RURecordControl::EndRecord();
        m_btnYy->setEnabled(false);
        m_btnHy->setEnabled(false);
        if (m_chkAppClose->isChecked())
            close();
    });
}

void Gqdxmtzmszn::HyButton()
{
    GUARDED(kSource, [&] {
        m_edit->setPlainText(m_data);
        btnState();
    });
}

void Gqdxmtzmszn::showText(const QString &caption, const QString &text)
{
    auto *window = new Gclqdxmtz_Txtz(this);
    window->SetCaption(caption);
    window->isReadOnly(true);
    window->setEdtData(text);
    ChildDialog::run(this, window);
}

void Gqdxmtzmszn::GfButton()
{
    GUARDED(kSource, [&] {
        const QString code = m_item ? m_item->text(BaseDataItem::CodeRole) : QString();
        showText(QStringLiteral("规范特征"),
                 FeatureStore::standardFeatureText(m_libraryPath, m_specialtyTable, FeatureStore::itemCode(code)));
    });
}

void Gqdxmtzmszn::TsButton()
{
    GUARDED(kSource, [&] { showText(QStringLiteral("填写提示"), m_hint); });
}

void Gqdxmtzmszn::DeleteCustomLine()
{
    GUARDED(kSource, [&] {
        FeatureStore::deleteCustomLine(m_customTable, m_selectedText);
        setXmbhmc(m_item);
    });
}

void Gqdxmtzmszn::EditCustomLine()
{
    GUARDED(kSource, [&] {
        auto *window = new Gclqdxmtz_Txtz(this);
        window->SetCaption(QStringLiteral("编辑自编特征描述"));
        window->isReadOnly(false);
        window->setEdtData(FeatureStore::doubledQuotes(m_selectedText));
        window->setDataName(m_customTable);
        connect(window, &Gclqdxmtz_Txtz::Updata, this, [this] { setXmbhmc(m_item); });
        ChildDialog::run(this, window);
    });
}

void Gqdxmtzmszn::GbButton()
{
    GUARDED(kSource, [&] { close(); });
}

void Gqdxmtzmszn::showEvent(QShowEvent *event)
{
    zTitleModal::showEvent(event);
    refitLater();
}

void Gqdxmtzmszn::refitLater()
{
    // The column widths are known only once the grid is laid out on screen.
    QTimer::singleShot(0, this, [this] {
        m_gdTableMszn->fitTextRows();
        m_gdCloudTabMszn->fitTextRows();
    });
}

void Gqdxmtzmszn::closeEvent(QCloseEvent *event)
{
    writeAppClose();
    m_tzWorker->discardPending();
    m_gcslWorker->discardPending();
    zTitleModal::closeEvent(event);
}

void Gqdxmtzmszn::writeAppClose() const
{
    GUARDED(kSource, [&] {
        // Written only when it changes: each write syncs the file to disk.
        const QString value = m_chkAppClose->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
        const std::unique_ptr<QSettings> settings = HostConfig::openSysSet();
        if (settings->value(kAppCloseKey).toString() != value)
            settings->setValue(kAppCloseKey, value);
    });
}

bool Gqdxmtzmszn::cloudPaging() const
{
    return m_rbCloud->isChecked() && getCurrServer();
}

void Gqdxmtzmszn::FirstPage()
{
    GUARDED(kSource, [&] {
        if (cloudPaging()) {
            m_cloudPage = 1;
            requestTzData();
        } else if (!m_lines.isEmpty()) {
            showLocalPage(0, FeatureGridLayout::rowCount(m_lineCount));
        }
    });
}

void Gqdxmtzmszn::PreviousPage()
{
    GUARDED(kSource, [&] {
        if (cloudPaging()) {
            if (m_cloudPage <= 1) {
                showMessageBox(QStringLiteral("已经是第一页"), this);
                return;
            }
            --m_cloudPage;
            requestTzData();
        } else if (m_localPage > 0) {
            const int page = m_localPage - 1;
            showLocalPage(page, page == 0 ? FeatureGridLayout::rowCount(m_lineCount)
                                          : FeatureGridLayout::rowCount(FeatureGridLayout::LinesPerPage));
        }
    });
}

void Gqdxmtzmszn::NextPage()
{
    GUARDED(kSource, [&] {
        if (cloudPaging()) {
            ++m_cloudPage;
            requestTzData();
        } else if (m_localPage < FeatureGridLayout::pageCount(m_lines.size()) - 1) {
            const int page = m_localPage + 1;
            const int left = m_lines.size() / 2 - page * FeatureGridLayout::LinesPerPage;
            showLocalPage(page, FeatureGridLayout::rowCount(left));
        }
    });
}

void Gqdxmtzmszn::LastPage()
{
    GUARDED(kSource, [&] {
        if (cloudPaging()) {
            m_cloudPage = std::max(1, m_cloudPageCount);
            requestTzData();
        } else {
            const int page = FeatureGridLayout::pageCount(m_lines.size()) - 1;
            if (page <= 0)
                return;
            const int left = m_lines.size() / 2 - page * FeatureGridLayout::LinesPerPage;
            showLocalPage(page, FeatureGridLayout::rowCount(left));
        }
    });
}

void Gqdxmtzmszn::ObtainLastRow()
{
    GUARDED(kSource, [&] {
        BaseDataItem *item = m_item;
        bool found = false;
        emit TheCurrentListing(item, false, found);
        emit signalPreviousQd(found);
        if (found && item)
            setCurrQd(item);
    });
}

void Gqdxmtzmszn::ObtainNextRow()
{
    GUARDED(kSource, [&] {
        BaseDataItem *item = m_item;
        bool found = false;
        emit TheCurrentListing(item, true, found);
        emit signalNextQd(found);
        if (found && item)
            setCurrQd(item);
    });
}

void Gqdxmtzmszn::slotBtnGrySsClicked()
{
    GUARDED(kSource, [&] {
        if (!getCurrServer()) {
            showMessageBox(QStringLiteral("请选择服务器"), this);
            return;
        }
        if (!m_sources->checkSource())
            return;
        m_cloudPage = 1;
        requestTzData();
    });
}

void Gqdxmtzmszn::requestTzData()
{
    GUARDED(kSource, [&] {
        HOSTLOG("znytz:", "开始requestTzData");
        LtdInfo *server = getCurrServer();
        if (!server || !m_item || m_item->GetKind() != BaseDataItem::BillKind)
            return;
        if (m_table && m_table->GetTableKind() == JJBTableBase::MeasureTableKind && m_item->IsExcludeInChain())
            return;
        HOSTLOG("znytz:", "开始requestTzData2");
        m_params.setSearchText(m_search->text());
        m_params.setPage(m_cloudPage);
        m_params.setPageSize(FeatureCloudReply::PageSize);
        if (!m_rbCloud->isChecked()) {
            // Still a new request: whatever was asked before is stale now.
            m_tzWorker->discardPending();
            return;
        }
        setLoading(true);
        BaseDataItem *item = m_item;
        const CloudParams params = m_params;
        const LtdInfo entry = *server;
        const int mode = m_sources->mode();
        const QStringList ids = m_sources->projectIds();
        emit signalRequestData(server, params.getPage(), params.getSearchText(), params.getPageSize(), ids);
        m_tzWorker->start([item, params, entry, mode, ids](QJsonObject &reply) {
            LtdInfo copy = entry;
            CloudBusiness::MatchQdtz(item, params, &copy, reply, mode, ids);
            HostLog::write(QStringLiteral("znytz:"), QStringLiteral("thread run"));
            return true;
        });
        HOSTLOG("znytz:", "结束requestTzData3");
    });
}

void Gqdxmtzmszn::setLoading(bool shown)
{
    m_loading->setVisible(shown);
    if (shown)
        m_loading->movie()->start();
    else
        m_loading->movie()->stop();
}

void Gqdxmtzmszn::slotUpdataTzData(int number)
{
    GUARDED(kSource, [&] {
        HOSTLOG("znytz:", "slotUpdataTzData");
        if (unsigned(number) != m_tzWorker->newest())
            return;
        setLoading(false);
        const CloudReply reply(m_tzReply);
        if (!reply.answered())
            return;
        if (reply.code() != 0) {
            showMessageBox(reply.msg(), this);
            return;
        }
        const int pages = FeatureCloudReply::pageCount(reply.object());
        HOSTLOG("znytz:", QStringLiteral("maxPage:%1").arg(pages));
        QList<CloudZnytzBean> results = FeatureCloudReply::results(reply.object());
        setXmtzData(results, pages);
    });
}

void Gqdxmtzmszn::setXmtzData(QList<CloudZnytzBean> &results, int pageCount)
{
    GUARDED(kSource, [&] {
        HOSTLOG("znytz:", "开始setXmtzData");
        setCloudTableClear();
        m_results = results;
        m_cloudPageCount = pageCount;
        m_gdCloudTabMszn->setRowCount(((results.size() + 1) / 2) * 2);
        HOSTLOG("znytz:", QStringLiteral("tempTzNum:%1").arg(results.size()));
        for (int i = 0; i < results.size(); ++i) {
            HOSTLOG("znytz:", QStringLiteral("for tempTzNum:%1").arg(i));
            m_gdCloudTabMszn->placeResult(i, m_cloudPage, results.at(i), m_workContent);
        }
        refitLater();
        HOSTLOG("znytz:", "开始cloudLibraries");
        for (const CloudZnytzBean &r : results) {
            const QString name = r.getBzQd() ? r.getQdkMc() : QStringLiteral("工程实例");
            if (m_libraries->findItems(name, Qt::MatchExactly).isEmpty())
                m_libraries->addItem(name);
        }
        setBtnpageEnable();
        HOSTLOG("znytz:", "结束setXmtzData");
    });
}

void Gqdxmtzmszn::selectCloudResult(int row, int column)
{
    GUARDED(kSource, [&] {
        const int index = FeatureCloudReply::resultIndex(row, column);
        if (row < 0 || index < 0 || index >= m_results.size())
            return;
        const CloudZnytzBean &result = m_results.at(index);
        m_selectedText = m_workContent ? result.getGcnr() : result.getXmtz();
        m_edit->setPlainText(m_selectedText);
    });
}

void Gqdxmtzmszn::requestProjectInfo(int row, int column)
{
    GUARDED(kSource, [&] {
        m_gdCloudTabMszn->setCurrentCell(-1, -1);
        const int index = FeatureCloudReply::resultIndex(row, column);
        LtdInfo *server = getCurrServer();
        if (!server || index >= m_results.size())
            return;
        setLoading(true);
        const LtdInfo entry = *server;
        QString id = m_results.at(index).getXmid();
        emit signalRequestGcslData(server, id);
        m_gcslWorker->start([entry, id](QJsonObject &reply) {
            LtdInfo copy = entry;
            QString xmid = id;
            return CloudBusiness::RequestGcslData(&copy, xmid, reply);
        });
    });
}

void Gqdxmtzmszn::slotUpdataGcslData(int number)
{
    GUARDED(kSource, [&] {
        if (unsigned(number) != m_gcslWorker->newest())
            return;
        setLoading(false);
        const QJsonObject data = CloudReply(m_gcslReply).dataObject();
        QString values[5];
        const char *keys[5] = {"xmmc", "qdbh", "dwmc", "dxmc", "qdmc"};
        for (int i = 0; i < 5; ++i)
            values[i] = data.value(QLatin1String(keys[i])).toString();
        auto *window = new Gclqdxmszn_Xmxx(this);
        window->setData(values[0], values[1], values[2], values[3], values[4]);
        ChildDialog::run(this, window);
    });
}

void Gqdxmtzmszn::setBtnpageEnable()
{
    const bool more = m_cloudPage != m_cloudPageCount;
    m_btnNext->setEnabled(more);
    m_btnLast->setEnabled(more);
    m_btnFirst->setEnabled(m_cloudPage > 1);
    m_btnPrevious->setEnabled(m_cloudPage > 1);
}

void Gqdxmtzmszn::setCloudTableClear()
{
    m_results.clear();
    m_gdCloudTabMszn->clearContents();
    m_gdCloudTabMszn->setRowCount(0);
    m_libraries->clear();
}

void Gqdxmtzmszn::resetLogin()
{
    GUARDED(kSource, [&] {
        m_tzWorker->discardPending();
        setLoading(false);
        setCloudTableClear();
        m_cloudPage = 1;
        m_cloudPageCount = 0;
    });
}
