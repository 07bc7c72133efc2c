#include "cloudclsavedialogm.h"
#include "materialheading.h"
#include "materiallibrarylist.h"
#include "materiallibraryrequests.h"
#include "tcloudclsavedialog_xjbc.h"

#include <cloud/cloudexchange.h>

#include <hostapi/buttonrow.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/messagebox.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "CloudCLSaveDialogm";
int px(int v) { return InterfaceAdaptation::scaled(v); }
}

CloudCLSaveDialogm::CloudCLSaveDialogm(int tax, QWidget *parent)
    : zTitleModal(parent)
    , m_tax(tax)
{
    GUARDED(kSource, [&] {
        OnlyClose();
        SetCaption(QStringLiteral("保存材料"));
        setBackgroundColor(QColor(0xF5, 0xF7, 0xF9));
        setScaledFixedSize(638, 470);
        CreateUI();
        MaterialPriceTables::ensureTables();
        listLocalTables();
        Local();
    });
}

void CloudCLSaveDialogm::CreateUI()
{
    QWidget *client = clientWidget();
    m_lblObject = WidgetFactory::label(QString(), QStringLiteral("lblBcdx"), client);
    m_lblCount = WidgetFactory::label(QString(), QStringLiteral("lblCount"), client);
    m_lblCount->setStyleSheet(QStringLiteral("#lblCount{color:#F56C6C;}"));
    auto *object = new QHBoxLayout;
    object->setSpacing(px(4));
    object->addWidget(WidgetFactory::label(QStringLiteral("保存对象:"), QStringLiteral("lblBcdxTitle"), client));
    object->addWidget(m_lblObject);
    object->addWidget(WidgetFactory::label(QStringLiteral("当前材料(共"), QStringLiteral("lblDqcl"), client));
    object->addWidget(m_lblCount);
    object->addWidget(WidgetFactory::label(QStringLiteral("条)"), QStringLiteral("lblTiao"), client));
    object->addStretch();
    m_gdTable = MaterialLibraryList::createView(client, QStringLiteral("gdTable"));
    m_gdTableCloud = MaterialLibraryList::createView(client, QStringLiteral("gdTableCloud"));
    for (zTableView *list : {m_gdTable, m_gdTableCloud}) {
        list->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(list, &QWidget::customContextMenuRequested, this, &CloudCLSaveDialogm::ShowMenu);
    }
    auto *buttons = new ButtonRow(client);
    buttons->setButtonSize(72, 28);
    QPushButton *create = buttons->addButton(QStringLiteral("新建表"), QStringLiteral("btnXjb"));
    buttons->addGap(10);
    QPushButton *ok = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnOk"));
    buttons->addGap(10);
    QPushButton *cancel = buttons->addButton(QStringLiteral("取消"), QStringLiteral("btnCancel"));
    auto *body = new QVBoxLayout;
    body->setContentsMargins(px(20), px(12), px(20), px(14));
    body->setSpacing(px(10));
    body->addLayout(MaterialHeading::build(client, QStringLiteral(":/Image/Velostra/s_icon_qdycc.svg"),
                                           QStringLiteral("材料价格存储")));
    body->addWidget(WidgetFactory::rule(QStringLiteral("lblLine1"), client, 598, QStringLiteral("#DCDFE6")));
    body->addLayout(object);
    body->addLayout(placeRow());
    body->addWidget(WidgetFactory::label(QStringLiteral("<b>材价表:</b>"), QStringLiteral("lblCjb"), client));
    body->addWidget(m_gdTable, 1);
    body->addWidget(m_gdTableCloud, 1);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
    connect(create, &QPushButton::clicked, this, &CloudCLSaveDialogm::NewTable);
    connect(ok, &QPushButton::clicked, this, &CloudCLSaveDialogm::Confirm);
    connect(cancel, &QPushButton::clicked, this, &CloudCLSaveDialogm::Cancel);
    CloudServerChoice *choice = createServerChoice(m_comServer, GuardSite(kSource, this));
    choice->setServerKind(QStringLiteral("cj"));
    choice->setHonourSaveBzQd(false);
    connect(choice, &CloudServerChoice::signalReloadData, this, &CloudCLSaveDialogm::slotRequestJbData);
    connect(choice, &CloudServerChoice::signalClearData, this,
            [this] { MaterialLibraryList::setRows(m_gdTableCloud->tableModel(), {}); });
}

QLayout *CloudCLSaveDialogm::placeRow()
{
    QWidget *client = clientWidget();
    m_rbLocal = new QRadioButton(QStringLiteral("本地"), client);
    m_rbLocal->setObjectName(QStringLiteral("rbLocal"));
    m_rbCloud = new QRadioButton(QStringLiteral("云服务器"), client);
    m_rbCloud->setObjectName(QStringLiteral("rbCloud"));
    auto *group = new QButtonGroup(this);
    group->addButton(m_rbLocal);
    group->addButton(m_rbCloud);
    m_rbLocal->setChecked(true);
    m_comServer = new CloudServerCombox(client);
    m_comServer->setObjectName(QStringLiteral("comServer"));
    m_comServer->setFixedSize(px(220), px(30));
    auto *row = new QHBoxLayout;
    row->setSpacing(px(10));
    row->addWidget(WidgetFactory::label(QStringLiteral("保存位置:"), QStringLiteral("lblBcwz"), client));
    row->addWidget(m_rbLocal);
    row->addWidget(m_rbCloud);
    row->addWidget(m_comServer);
    row->addStretch();
    connect(m_rbLocal, &QRadioButton::clicked, this, &CloudCLSaveDialogm::Local);
    connect(m_rbCloud, &QRadioButton::clicked, this, &CloudCLSaveDialogm::Cloud);
    return row;
}

void CloudCLSaveDialogm::SomeData(int count, QString text)
{
    GUARDED(kSource, [&] {
        m_lblObject->setText(text);
        m_lblObject->setFixedWidth(m_lblObject->fontMetrics().horizontalAdvance(text));
        m_lblCount->setText(QString::number(count));
        m_lblCount->setFixedWidth(m_lblCount->fontMetrics().horizontalAdvance(m_lblCount->text()));
    });
}

void CloudCLSaveDialogm::StoreData(GljBean *material)
{
    GUARDED(kSource, [&] {
        if (material)
            m_material = *material;
    });
}

bool CloudCLSaveDialogm::isCloud() const
{
    return m_rbCloud->isChecked();
}

void CloudCLSaveDialogm::Local()
{
    GUARDED(kSource, [&] {
        m_rbLocal->setChecked(true);
        m_gdTable->show();
        m_gdTableCloud->hide();
        m_comServer->hide();
    });
}

void CloudCLSaveDialogm::Cloud()
{
    GUARDED(kSource, [&] {
        m_rbCloud->setChecked(true);
        m_gdTable->hide();
        m_gdTableCloud->show();
        m_comServer->show();
        if (!m_cloudStarted) {
            m_cloudStarted = true;
            serverChoice()->start();
            return;
        }
        requestServerList();
        readSetting();
        slotRequestJbData();
    });
}

void CloudCLSaveDialogm::slotRequestJbData()
{
    GUARDED(kSource, [&] {
        if (getCurrServer())
            MaterialLibraryList::load(GuardSite(kSource, this), getCurrServer(), m_gdTableCloud, m_libraryIds);
        else
            MaterialLibraryList::setRows(m_gdTableCloud->tableModel(), {});
    });
}

void CloudCLSaveDialogm::listLocalTables()
{
    const QStringList texts = MaterialPriceTables::listTables();
    MaterialLibraryList::setRows(m_gdTable->tableModel(), texts);
    m_localRows = texts.size();
    m_defaultLabel = texts.value(0);
}

void CloudCLSaveDialogm::Confirm()
{
    GUARDED(kSource, [&] {
        if (isCloud())
            confirmCloud();
        else
            confirmLocal();
    });
}

void CloudCLSaveDialogm::confirmLocal()
{
    if (m_gdTable->tableModel()->rowCount() == 0) {
        showMessageBox(QStringLiteral("当前没有价表，请创建价表"), this);
        return;
    }
    const int row = qMax(0, MaterialLibraryList::selectedRow(m_gdTable));
    QString text = m_gdTable->tableModel()->cellValue(row, QStringLiteral("wb")).toString();
    // A table created in this dialog takes every later confirm, whatever is selected.
    if (!m_presetLabel.isEmpty())
        text = m_presetLabel;
    const MaterialPriceTables::TableRef table = MaterialPriceTables::findTable(MaterialPriceTables::nameOf(text));
    if (!singleMaterial || !singleDykMaterial) {
        if (!singleMaterial)
            emit MultipleData(table.id, table.lyid);
        else
            emit DykMultipleData(table.id, table.lyid);
        emit ConfirmData();
        close();
        return;
    }
    MaterialPriceTables::saveMaterial(table, m_material, m_matchCount);
    showMessageBox(QStringLiteral("保存成功"), this);
    emit ConfirmData();
    close();
}

void CloudCLSaveDialogm::confirmCloud()
{
    if (!serverChoice()->checkServer(this))
        return;
    if (MaterialLibraryList::selectedRow(m_gdTableCloud) < 0) {
        showMessageBox(QStringLiteral("请先选择一条价表"), this);
        return;
    }
    const QString name = MaterialLibraryList::selectedText(m_gdTableCloud);
    if (!m_libraryIds.contains(name))
        return;
    QString id = m_libraryIds.value(name);
    emit signalCheckData(getCurrServer(), id);
}

bool CloudCLSaveDialogm::permitted()
{
    if (!MaterialLibraryRequests::needsPermission(getCurrServer()))
        return true;
    return bool(CloudExchange(GuardSite(kSource, this)).call(MaterialLibraryRequests::permission(getCurrServer())));
}

QString CloudCLSaveDialogm::askName(const QString &caption)
{
    if (!m_xjbc)
        m_xjbc = new TCloudCLSaveDialog_Xjbc(this);
    m_xjbc->SetWidgetName(caption);
    m_xjbc->getEdtJbmc()->clear();
    QPointer<CloudCLSaveDialogm> self(this);
    m_xjbc->ShowModal();
    if (!self || !m_xjbc)
        return QString();
    return m_xjbc->slotData();
}

void CloudCLSaveDialogm::NewTable()
{
    GUARDED(kSource, [&] {
        if (isCloud() && !getCurrServer()) {
            showMessageBox(QStringLiteral("请选择服务器"), this);
            return;
        }
        if (isCloud() && !permitted())
            return;
        const QString name = askName(QStringLiteral("新建材价表"));
        if (name.isNull())
            return;
        if (!isCloud()) {
            if (!MaterialPriceTables::createTable(name, MaterialPriceTables::taxFlagFor(m_tax))) {
                showMessageBox(QStringLiteral("价表名称已存在."), this);
                return;
            }
            m_presetLabel = name;
            listLocalTables();
            m_currentRow = m_localRows - 1;
            m_gdTable->selectRowAt(m_currentRow);
            return;
        }
        CloudExchange cloud(GuardSite(kSource, this));
        if (!cloud.call(MaterialLibraryRequests::edit(getCurrServer(), MaterialLibraryRequests::Create, QString(), name)))
            return;
        slotRequestJbData();
        selectCloudRow(name);
    });
}

void CloudCLSaveDialogm::selectCloudRow(const QString &name)
{
    zTableModel *model = m_gdTableCloud->tableModel();
    for (int row = 0; row < model->rowCount(); ++row)
        if (model->cellValue(row, QStringLiteral("wb")).toString() == name) {
            m_currentRow = row;
            m_gdTableCloud->selectRowAt(row);
        }
}

void CloudCLSaveDialogm::ShowMenu(const QPoint &pos)
{
    GUARDED(kSource, [&] {
        zTableView *list = isCloud() ? m_gdTableCloud : m_gdTable;
        if (MaterialLibraryList::selectedRow(list) < 0) {
            showMessageBox(QStringLiteral("请先选择一条价表"), this);
            return;
        }
        QMenu menu(this);
        connect(menu.addAction(QStringLiteral("重命名")), &QAction::triggered, this, &CloudCLSaveDialogm::Rename);
        connect(menu.addAction(QStringLiteral("删除")), &QAction::triggered, this, &CloudCLSaveDialogm::SlotDelete);
        menu.exec(list->viewport()->mapToGlobal(pos));
    });
}

void CloudCLSaveDialogm::Rename()
{
    GUARDED(kSource, [&] {
        zTableView *list = isCloud() ? m_gdTableCloud : m_gdTable;
        m_currentRow = MaterialLibraryList::selectedRow(list);
        const QString text = MaterialLibraryList::selectedText(list);
        if (m_currentRow < 0 || (isCloud() && !permitted()))
            return;
        const QString name = askName(QStringLiteral("价表重命名"));
        if (name.isNull())
            return;
        if (!isCloud()) {
            if (!MaterialPriceTables::renameTable(MaterialPriceTables::nameOf(text), name))
                showMessageBox(QStringLiteral("价表名称已存在."), this);
            else
                listLocalTables();
            return;
        }
        if (m_libraryIds.contains(name)) {
            showMessageBox(QStringLiteral("表已存在"), this);
            return;
        }
        CloudExchange cloud(GuardSite(kSource, this));
        if (cloud.call(MaterialLibraryRequests::edit(getCurrServer(), MaterialLibraryRequests::Rename,
                                                     m_libraryIds.value(text), name)))
            slotRequestJbData();
    });
}

void CloudCLSaveDialogm::SlotDelete()
{
    GUARDED(kSource, [&] {
        zTableView *list = isCloud() ? m_gdTableCloud : m_gdTable;
        m_currentRow = MaterialLibraryList::selectedRow(list);
        const QString text = MaterialLibraryList::selectedText(list);
        if (m_currentRow < 0)
            return;
        if (showMessage(QStringLiteral("提示"), QStringLiteral("是否删除该价表下包含的材料？"),
                        {QStringLiteral("确定"), QStringLiteral("取消")}, this) != 0)
            return;
        if (!isCloud()) {
            MaterialPriceTables::deleteTable(MaterialPriceTables::nameOf(text));
            listLocalTables();
            return;
        }
        if (!permitted())
            return;
        CloudExchange cloud(GuardSite(kSource, this));
        if (cloud.call(MaterialLibraryRequests::edit(getCurrServer(), MaterialLibraryRequests::Delete,
                                                     m_libraryIds.value(text), text)))
            slotRequestJbData();
    });
}

void CloudCLSaveDialogm::Cancel()
{
    close();
}
