#include "mainwindow.h"
#include "billdetailpanel.h"
#include "billtreemodel.h"
#include "dialogregistry.h"
#include "elidedlabel.h"
#include "hostcloudwaiter.h"
#include "hoststate.h"
#include "materialtablemodel.h"
#include "multilinedelegate.h"
#include "projectdocument.h"
#include "projectfileactions.h"
#include "settingspanel.h"

#include <hostapi/exceptionguard.h>
#include <hostapi/messagebox.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/serverregistry.h>
#include <hostapi/cloudchannel.h>
#include <hostapi/servicesutil.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/tablegrid.h>
#include <hostapi/userlogin.h>
#include <hostapi/users.h>
#include <hostapi/widgetfactory.h>

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QMenu>
#include <QLabel>
#include <QMenuBar>
#include <QSet>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTreeView>
#include <QUndoStack>

MainWindow::MainWindow(ProjectDocument *project, QWidget *parent)
    : QMainWindow(parent), m_project(project), m_undo(new QUndoStack(this))
{
    setObjectName(QStringLiteral("VeloraHostMainWindow"));
    RURecordControl::setUndoStack(m_undo);
    m_context.window = this;
    m_context.project = project;
    m_context.onCurrentBillChanged = [this](BaseDataItem *bill) { selectBill(bill); };
    m_context.billSelection = [this] { return selectedBills(); };
    m_context.onHighlightBills = [this](const QList<BaseDataItem *> &bills) {
        for (BillTreeModel *model : qAsConst(m_billModels))
            model->setHighlighted(bills);
    };
    buildCentral();
    buildMenus();
    buildStatusBar();
    followLoginBroker();
    followCloudWaits();
    selectFirstBill();
    resize(1280, 800);
    connect(m_undo, &QUndoStack::cleanChanged, this, &MainWindow::updateTitle);
    updateTitle();
}

void MainWindow::selectFirstBill()
{
    const QList<BaseDataItem *> bills = m_project->allBills();
    if (!bills.isEmpty())
        selectBill(bills.first());
    for (QTreeView *view : qAsConst(m_billViews))
        view->scrollToTop();
}

QString MainWindow::documentTitle() const
{
    const QString path = m_project->filePath();
    return path.isEmpty() ? m_project->name() : QFileInfo(path).fileName();
}

void MainWindow::updateTitle()
{
    setWindowTitle(QStringLiteral("Velora — %1[*]").arg(documentTitle()));
    setWindowModified(!m_undo->isClean());
}

QAbstractItemModel *MainWindow::currentBillModel() const
{
    return m_billModels.value(m_billTabs->currentIndex());
}

QAbstractItemModel *MainWindow::materialModel() const
{
    return m_materials;
}

void MainWindow::replaceProject(ProjectDocument &&next, bool modified)
{
    const QByteArray vertical = m_vertical->saveState();
    const QByteArray upper = m_upper->saveState();
    const int lowerTab = m_lowerTabs->currentIndex();
    for (QWidget *w : findChildren<QWidget *>()) {
        if (w->isWindow() && w->isVisible() && !qobject_cast<QMenu *>(w)) {
            w->close();
            w->deleteLater();
        }
    }
    RURecordControl::abandonRecord();
    m_undo->clear();
    m_context.currentBill = nullptr;
    m_context.currentTable = nullptr;
    disconnect(m_billTabs, nullptr, this, nullptr);
    for (BillTreeModel *model : qAsConst(m_billModels))
        disconnect(model, nullptr, this, nullptr);
    delete takeCentralWidget();
    qDeleteAll(m_billModels);
    m_billModels.clear();
    m_billViews.clear();
    delete m_materials;
    *m_project = std::move(next);
    buildCentral();
    selectFirstBill();
    m_vertical->restoreState(vertical);
    m_upper->restoreState(upper);
    m_lowerTabs->setCurrentIndex(lowerTab);
    if (modified)
        m_undo->resetClean();
    updateTitle();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_files->maybeSave()) {
        event->ignore();
        return;
    }
    saveLayout();
    auto state = HostState::open();
    state->setValue(QStringLiteral("Window/geometry"), saveGeometry());
    state->setValue(QStringLiteral("Files/last"), m_project->filePath());
    event->accept();
}

void MainWindow::saveLayout() const
{
    auto state = HostState::open();
    state->setValue(QStringLiteral("Window/splitter"), m_vertical->saveState());
    state->setValue(QStringLiteral("Window/upperSplitter"), m_upper->saveState());
    state->setValue(QStringLiteral("Window/billTab"), m_billTabs->currentIndex());
    state->setValue(QStringLiteral("Window/lowerTab"), m_lowerTabs->currentIndex());
}

void MainWindow::restoreLayout()
{
    auto state = HostState::open();
    restoreGeometry(state->value(QStringLiteral("Window/geometry")).toByteArray());
    m_vertical->restoreState(state->value(QStringLiteral("Window/splitter")).toByteArray());
    m_upper->restoreState(state->value(QStringLiteral("Window/upperSplitter")).toByteArray());
    m_billTabs->setCurrentIndex(state->value(QStringLiteral("Window/billTab"), m_billTabs->currentIndex()).toInt());
    m_lowerTabs->setCurrentIndex(state->value(QStringLiteral("Window/lowerTab"), 0).toInt());
}

MainWindow::~MainWindow()
{
    ServicesUtil::setWaiter(nullptr);
    // The project outlives no undo step that points into it.
    RURecordControl::abandonRecord();
    RURecordControl::setUndoStack(nullptr);
    // The stack is destroyed with the children, after this window is no
    // longer a MainWindow: its last signals must not reach our slots.
    m_undo->disconnect(this);
}

void MainWindow::buildCentral()
{
    auto *splitter = new QSplitter(Qt::Vertical, this);
    auto *upper = new QSplitter(Qt::Horizontal, splitter);
    m_vertical = splitter;
    m_upper = upper;
    m_billTabs = new QTabWidget(upper);
    m_billTabs->setObjectName(QStringLiteral("tabBills"));
    for (JJBTableBase *table : m_project->unitWork()->pricingTables()) {
        auto *model = new BillTreeModel(table, this);
        auto *view = new QTreeView(m_billTabs);
        view->setModel(model);
        view->setItemDelegate(new MultiLineDelegate({BillTreeModel::FeaturesColumn, BillTreeModel::WorkContentColumn}, view));
        view->setAlternatingRowColors(true);
        view->setSelectionMode(QAbstractItemView::ExtendedSelection);
        view->setUniformRowHeights(true);
        view->setWordWrap(false);
        view->expandAll();
        const int widths[] = {140, 150, 45, 240, 170, 75, 85};
        for (int c = 0; c < BillTreeModel::ColumnCount; ++c)
            view->setColumnWidth(c, widths[c]);
        connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
                [this, model](const QModelIndex &current) { currentRowChanged(model, current); });
        connect(model, &QAbstractItemModel::dataChanged, this, [this, model](const QModelIndex &first) {
            if (model->itemAt(first) == m_context.currentBill)
                m_detail->showBill(m_context.currentBill);
        });
        m_billTabs->addTab(view, table->GetName());
        m_billViews.append(view);
        m_billModels.append(model);
    }
    m_detail = new BillDetailPanel(upper);
    upper->setStretchFactor(0, 4);
    upper->setStretchFactor(1, 1);
    auto *lower = new QTabWidget(splitter);
    m_lowerTabs = lower;
    m_materials = new MaterialTableModel(m_project->materialTable(), this);
    auto *materialView = new QTableView(lower);
    materialView->setObjectName(QStringLiteral("tableMaterials"));
    TableGrid::install(materialView);
    materialView->setModel(m_materials);
    m_context.materials = m_materials;
    m_context.materialSelection = materialView->selectionModel();
    materialView->verticalHeader()->setDefaultSectionSize(24);
    materialView->resizeColumnsToContents();
    materialView->horizontalHeader()->setSectionResizeMode(MaterialTableModel::MakerColumn, QHeaderView::Stretch);
    lower->addTab(materialView, QStringLiteral("人材机汇总"));
    m_settings = new SettingsPanel(lower);
    lower->addTab(m_settings, QStringLiteral("工程设置"));
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    setCentralWidget(splitter);
    connect(m_billTabs, &QTabWidget::currentChanged, this, &MainWindow::billTabChanged);
}

void MainWindow::buildMenus()
{
    QMenu *file = menuBar()->addMenu(QStringLiteral("文件(&F)"));
    m_files = new ProjectFileActions(this);
    m_files->fillMenu(file);
    file->addAction(QStringLiteral("退出(&X)"), this, &QWidget::close);
    QMenu *edit = menuBar()->addMenu(QStringLiteral("编辑(&E)"));
    QAction *undo = m_undo->createUndoAction(this, QStringLiteral("撤销"));
    undo->setShortcut(QKeySequence::Undo);
    QAction *redo = m_undo->createRedoAction(this, QStringLiteral("重做"));
    QList<QKeySequence> redoKeys = QKeySequence::keyBindings(QKeySequence::Redo);
    if (!redoKeys.contains(QKeySequence(Qt::CTRL + Qt::Key_Y)))
        redoKeys.append(QKeySequence(Qt::CTRL + Qt::Key_Y));
    redo->setShortcuts(redoKeys);
    edit->addAction(undo);
    edit->addAction(redo);
    buildModuleMenu();
    QMenu *account = menuBar()->addMenu(QStringLiteral("云账号(&A)"));
    m_loginAction = account->addAction(QStringLiteral("登录Korvane云…"), this, &MainWindow::login);
    m_loginAction->setObjectName(QStringLiteral("actLogin"));
    m_logoutAction = account->addAction(QStringLiteral("退出登录"), this, &MainWindow::logout);
    m_logoutAction->setObjectName(QStringLiteral("actLogout"));
}

void MainWindow::buildModuleMenu()
{
    QMenu *cloud = menuBar()->addMenu(QStringLiteral("云功能(&C)"));
    cloud->setToolTipsVisible(true);
    QList<QPair<QString, QString>> items = DialogRegistry::plannedEntries();
    for (const HostDialogEntry &e : DialogRegistry::entries()) {
        bool planned = false;
        for (const auto &p : items)
            planned = planned || p.first == e.id;
        if (!planned)
            items.append({e.id, e.title});
    }
    for (const auto &item : items) {
        const QString id = item.first;
        const HostDialogEntry *entry = DialogRegistry::find(id);
        QAction *action = cloud->addAction(entry ? entry->title : item.second);
        action->setObjectName(QStringLiteral("act_") + id);
        action->setEnabled(entry != nullptr);
        action->setToolTip(entry ? entry->title : QStringLiteral("该功能尚未接入"));
        connect(action, &QAction::triggered, this, [this, id] { openEntry(id); });
        m_entryActions.insert(id, action);
    }
}

void MainWindow::buildStatusBar()
{
    m_loginLabel = new ElidedLabel(this);
    m_loginLabel->setObjectName(QStringLiteral("lblLoginState"));
    m_channelLabel = new ElidedLabel(this);
    m_channelLabel->setObjectName(QStringLiteral("lblChannel"));
    m_channelLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    statusBar()->addWidget(m_loginLabel, 3);
    statusBar()->addPermanentWidget(m_channelLabel, 2);
    refreshLoginState();
}

void MainWindow::followLoginBroker()
{
    staticPriLoginObj *broker = staticPriLoginObj::GetInstance();
    connect(broker, &staticPriLoginObj::kvyLogin, this, &MainWindow::refreshLoginState);
    connect(broker, &staticPriLoginObj::kvyExit, this, &MainWindow::refreshLoginState);
    connect(broker, &staticPriLoginObj::kvyForceExit, this, &MainWindow::refreshLoginState);
    connect(broker, &staticPriLoginObj::priLogin, this, &MainWindow::refreshLoginState);
    connect(broker, &staticPriLoginObj::priExit, this, &MainWindow::refreshLoginState);
    connect(broker, &staticPriLoginObj::priForceExit, this, &MainWindow::refreshLoginState);
}

QString MainWindow::loginStateText() const
{
    UserInfo *kvy = Users::Instance()->Kvy();
    if (!kvy->IsLogin())
        return QStringLiteral("Korvane云：未登录");
    QString text = QStringLiteral("Korvane云：已登录（%1）").arg(kvy->userName());
    QStringList enterprises;
    for (LtdInfo *s : ServerRegistry::instance()->servers()) {
        if (s->kind() == QLatin1String("pri") && s->getServerLogin())
            enterprises << s->getServerName();
    }
    if (!enterprises.isEmpty())
        text += QStringLiteral("　企业云：%1").arg(enterprises.join(QStringLiteral("、")));
    return text;
}

void MainWindow::refreshLoginState()
{
    m_loginLabel->setFullText(loginStateText());
    const bool in = Users::Instance()->Kvy()->IsLogin();
    m_logoutAction->setEnabled(in);
}

void MainWindow::followCloudWaits()
{
    m_waiter = std::make_shared<HostCloudWaiter>(
        this, [this] { return m_channelText; },
        [this](const QString &text) {
            if (text.isEmpty())
                statusBar()->clearMessage();
            else
                statusBar()->showMessage(text);
        });
    ServicesUtil::setWaiter(m_waiter);
    connect(ServicesUtil::instance(), &ServicesUtil::reachabilityChanged, this, &MainWindow::showChannelState);
}

void MainWindow::setChannelText(const QString &text)
{
    m_channelText = text.isEmpty() ? QStringLiteral("未连接云服务") : text;
    showChannelState();
}

void MainWindow::showChannelState()
{
    const QString reason = ServicesUtil::instance()->unreachableReason();
    m_channelLabel->setFullText(reason.isEmpty() ? m_channelText
                                                 : QStringLiteral("%1：无法连接（%2）").arg(m_channelText, reason));
    m_channelLabel->setStyleSheet(reason.isEmpty() ? QString() : QStringLiteral("color: #D9001B;"));
}

// A server known to be down is asked once more before a cloud function
// opens; if it still does not answer the user is told so, instead of a
// dialog with an empty server list.
bool MainWindow::cloudAnswers()
{
    const std::shared_ptr<CloudChannel> channel = ServicesUtil::channel();
    if (!channel || channel->unreachableReason().isEmpty())
        return true;
    ServerRegistry::instance()->refresh();
    const QString reason = channel->unreachableReason();
    if (reason.isEmpty())
        return true;
    showMessageBox(QStringLiteral("无法连接%1（%2），请检查网络或稍后再试。").arg(m_channelText, reason), this, 3);
    return false;
}

void MainWindow::login()
{
    userLogin dialog(this);
    dialog.SetKvyLoginSueecss([this] { refreshLoginState(); });
    dialog.KvyExec();
    refreshLoginState();
}

void MainWindow::logout()
{
    ServerRegistry::instance()->logoutKorvane(false);
    refreshLoginState();
}

QTreeView *MainWindow::billView(int index) const
{
    return m_billViews.value(index);
}

void MainWindow::selectBill(BaseDataItem *bill)
{
    for (int i = 0; i < m_billModels.size(); ++i) {
        const QModelIndex index = m_billModels[i]->indexOf(bill);
        if (!index.isValid())
            continue;
        m_billTabs->setCurrentIndex(i);
        if (m_billViews[i]->currentIndex().internalPointer() != bill)
            m_billViews[i]->setCurrentIndex(index);
        m_billViews[i]->scrollTo(index);
    }
    showCurrent(bill, m_project->tableOf(bill));
}

QList<BaseDataItem *> MainWindow::selectedBills() const
{
    const int tab = m_billTabs->currentIndex();
    const BillTreeModel *model = m_billModels.value(tab);
    if (!model)
        return {};
    QSet<const BaseDataItem *> picked;
    for (const QModelIndex &row : m_billViews[tab]->selectionModel()->selectedRows())
        picked.insert(model->itemAt(row));
    QList<BaseDataItem *> bills;
    for (BaseDataItem *bill : model->table()->rootItem()->bills()) {
        for (const BaseDataItem *at = bill; at; at = at->parentItem()) {
            if (picked.contains(at)) {
                bills << bill;
                break;
            }
        }
    }
    return bills;
}

void MainWindow::currentRowChanged(BillTreeModel *model, const QModelIndex &index)
{
    BaseDataItem *item = model->itemAt(index);
    if (item && item->isBill()) {
        showCurrent(item, model->table());
        if (m_context.onBillFollowed)
            m_context.onBillFollowed(item);
    }
}

// The detail panel and the scope show the bill of the visible tab only: a
// tab without a chosen bill shows none.
void MainWindow::billTabChanged(int tab)
{
    BillTreeModel *model = m_billModels.value(tab);
    if (!model)
        return;
    BaseDataItem *item = model->itemAt(m_billViews[tab]->currentIndex());
    showCurrent(item && item->isBill() ? item : nullptr, model->table());
}

void MainWindow::showCurrent(BaseDataItem *bill, JJBTableBase *table)
{
    m_context.currentBill = bill;
    m_context.currentTable = table;
    m_detail->showBill(bill);
    m_settings->setScope(m_context.scopeLabel());
}

QWidget *MainWindow::openEntry(const QString &id)
{
    const HostDialogEntry *entry = DialogRegistry::find(id);
    if (!entry || !entry->open)
        return nullptr;
    if (!entry->offline && !cloudAnswers())
        return nullptr;
    const std::function<QWidget *(HostContext &)> open = entry->open;
    return GUARDED("VeloraHost", [&]() -> QWidget * { return open(m_context); });
}
