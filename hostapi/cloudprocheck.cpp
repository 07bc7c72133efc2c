#include "cloudprocheck.h"
#include "accumulatedprojectquery.h"
#include "buttonrow.h"
#include "exceptionguard.h"
#include "interfaceadaptation.h"
#include "messagebox.h"
#include "servicesutil.h"
#include "widgetfactory.h"
#include "zfiltersearchbox.h"
#include "ztablemodel.h"
#include "ztableview.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {
const QString kCheck = QStringLiteral("xz");
}

CloudProCheck::CloudProCheck(const QStringList &selected, LtdInfo *server, const QString &sjkm,
                             const TQDNodeInfo &info, QWidget *parent)
    : zTitleModal(parent), m_hasServer(server != nullptr), m_sjkm(sjkm), m_info(info)
{
    // The server is copied: the host may rebuild its list while this runs.
    if (server)
        m_server = *server;
    for (const QString &text : selected) {
        const QString id = AccumulatedProjectQuery::choiceId(text);
        if (!id.isEmpty() && !m_choices.contains(id)) {
            m_choices.insert(id, text);
            m_choiceOrder << id;
        }
    }
    buildUi();
}

void CloudProCheck::buildUi()
{
    OnlyClose();
    SetCaption(QStringLiteral("工程筛选"));
    setScaledFixedSize(640, 460);
    m_search = new zFilterSearchBox(this);
    m_search->setLabelText(QStringLiteral("工程名称"));
    m_search->setPlaceholderText(QStringLiteral("请输入工程名称关键词"));
    m_model = new zTableModel(this);
    m_model->addColumn(QStringLiteral("选择"), kCheck, 50);
    m_model->addColumn(QStringLiteral("工程名称"), QStringLiteral("xmmc"), 300);
    m_model->addColumn(QStringLiteral("地点"), QStringLiteral("dq"), 140);
    m_model->addColumn(QStringLiteral("时间"), QStringLiteral("sj"), 100);
    m_view = new zTableView(this);
    m_view->setObjectName(QStringLiteral("gdTableGc"));
    m_view->setModel(m_model);
    m_lblCount = WidgetFactory::label(QString(), QStringLiteral("lblCount"), this);
    auto *buttons = new ButtonRow(this);
    buttons->addLeading(m_lblCount);
    buttons->addOkCancel(this);
    auto *body = new QVBoxLayout;
    const int margin = InterfaceAdaptation::scaled(16);
    body->setContentsMargins(margin, margin, margin, margin);
    body->setSpacing(InterfaceAdaptation::scaled(10));
    body->addWidget(m_search);
    body->addWidget(m_view, 1);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
    connect(m_search, &zFilterSearchBox::signalSearch, this, [this](const QString &keyword) {
        if (loadProjects(keyword))
            showProjects();
    });
    connect(m_view, &zTableView::signalCheckBoxClicked, this, &CloudProCheck::slotCheckBoxClicked);
    updateCount();
}

bool CloudProCheck::InitGcInfo()
{
    return GUARDED_OR(false, "CloudProCheck", [&] {
        if (!m_hasServer) {
            showMessageBox(QStringLiteral("请选择服务器"), this);
            return false;
        }
        if (!loadProjects(QString()))
            return false;
        showProjects();
        return true;
    });
}

bool CloudProCheck::loadProjects(const QString &keyword)
{
    QJsonObject request = AccumulatedProjectQuery::buildRequest(m_server, m_gcType, keyword, m_condNull);
    QList<QJsonObject> projects;
    QString error;
    if (!AccumulatedProjectQuery::readReply(ServicesUtil::AsyncReplyLoop(request), &projects, &error)) {
        showMessageBox(error, this);
        return false;
    }
    m_projects = projects;
    return true;
}

void CloudProCheck::showProjects()
{
    m_model->clearRows();
    for (const QJsonObject &project : qAsConst(m_projects)) {
        const QString text = AccumulatedProjectQuery::choiceText(project);
        const QString id = AccumulatedProjectQuery::choiceId(text);
        const int row = m_model->addRow();
        m_model->appendCell(kCheck, QString(), zTableCell::CheckCell);
        m_model->appendCell(QStringLiteral("xmmc"), project.value(QStringLiteral("xmmc")).toString());
        m_model->appendCell(QStringLiteral("dq"), project.value(QStringLiteral("dq")).toString());
        m_model->appendCell(QStringLiteral("sj"), project.value(QStringLiteral("sj")).toString());
        m_model->setRowData(row, text);
        if (m_choices.contains(id))
            m_model->setCheckState(row, kCheck, Qt::Checked);
    }
    updateCount();
}

void CloudProCheck::slotCheckBoxClicked(const QModelIndex &index, Qt::CheckState state)
{
    const QString text = m_model->rowData(index.row()).toString();
    const QString id = AccumulatedProjectQuery::choiceId(text);
    if (id.isEmpty())
        return;
    if (state == Qt::Checked && !m_choices.contains(id)) {
        m_choices.insert(id, text);
        m_choiceOrder << id;
    } else if (state != Qt::Checked) {
        m_choices.remove(id);
        m_choiceOrder.removeAll(id);
    }
    updateCount();
}

QStringList CloudProCheck::checkedChoices() const
{
    QStringList out;
    for (const QString &id : m_choiceOrder)
        out << m_choices.value(id);
    return out;
}

void CloudProCheck::actOk()
{
    const QStringList choices = checkedChoices();
    QList<QMap<QString, QVariant>> maps;
    for (const QString &text : choices)
        maps << AccumulatedProjectQuery::choiceObject(text).toVariantMap();
    emit signalCheckGc(choices);
    emit signalCheckGcMaps(maps);
    zTitleModal::actOk();
}

void CloudProCheck::updateCount()
{
    m_lblCount->setText(QStringLiteral("已选%1个工程").arg(m_choiceOrder.size()));
}
