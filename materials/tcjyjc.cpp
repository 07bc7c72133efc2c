#include "tcjyjc.h"
#include "materialcheckrules.h"
#include "materialheading.h"
#include "materiallibrarylist.h"

#include <cloud/tcloudcldialog_yxys.h>

#include <hostapi/buttonrow.h>
#include <hostapi/childdialog.h>
#include <hostapi/clsdac.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/messagebox.h>
#include <hostapi/placedictionary.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/ztableview.h>

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "Cjyjc";
const QString kCaseProjects = QStringLiteral("案例工程");
int px(int v) { return InterfaceAdaptation::scaled(v); }
}

TCjyjc::TCjyjc(QWidget *parent)
    : zTitleModal(parent)
{
    OnlyClose();
    SetCaption(QStringLiteral("Velora"));
    setBackgroundColor(QColor(0xF5, 0xF7, 0xF9));
    setScaledFixedSize(600, 560);
}

void TCjyjc::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_gdTable)
            return;
        QWidget *client = clientWidget();
        m_gdTable = MaterialLibraryList::createView(client, QStringLiteral("gdTable"));
        auto *buttons = new ButtonRow(client);
        buttons->setButtonSize(72, 28);
        m_btnQd = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnQd"));
        buttons->addGap(10);
        QPushButton *close = buttons->addButton(QStringLiteral("关闭"), QStringLiteral("btnGb"));
        auto *body = new QVBoxLayout;
        body->setContentsMargins(px(20), px(12), px(20), px(14));
        body->setSpacing(px(10));
        body->addLayout(MaterialHeading::build(
            client, QStringLiteral(":/Image/Velostra/s_icon_cjycc.svg"), QStringLiteral("材价云检查"),
            QStringLiteral("根据个人云材价库,企业云材价库,企业工程积累,Korvane云工程积累的材价信息,对当前工程的材价进行检查。")));
        body->addWidget(WidgetFactory::rule(QStringLiteral("lblLine1"), client, 560, QStringLiteral("#DCDFE6")));
        body->addLayout(factorRows());
        body->addWidget(m_gdTable, 1);
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
        connect(m_btnXg, &QPushButton::clicked, this, &TCjyjc::Modify);
        connect(m_btnQd, &QPushButton::clicked, this, &TCjyjc::QdButton);
        connect(close, &QPushButton::clicked, this, &TCjyjc::GbButton);
        CloudServerChoice *choice = createServerChoice(m_comServer, GuardSite(kSource, this));
        choice->setServerKind(QStringLiteral("cj"));
        connect(choice, &CloudServerChoice::signalReloadData, this, &TCjyjc::slotRequestJbData);
        connect(choice, &CloudServerChoice::signalClearData, this,
                [this] { MaterialLibraryList::setRows(m_gdTable->tableModel(), {kCaseProjects}); });
        MaterialLibraryList::setRows(m_gdTable->tableModel(), {kCaseProjects});
        choice->start();
    });
}

QLayout *TCjyjc::factorRows()
{
    QWidget *client = clientWidget();
    m_lblSjsz = WidgetFactory::label(QString(), QStringLiteral("lblSjsz"), client);
    m_lblDdsz = WidgetFactory::label(QString(), QStringLiteral("lblDdsz"), client);
    m_lblHbsz = WidgetFactory::label(QString(), QStringLiteral("lblHbsz"), client);
    m_lblYyfwz = WidgetFactory::label(QString(), QStringLiteral("lblYyfwz"), client);
    m_btnXg = WidgetFactory::button(QStringLiteral("修改"), QStringLiteral("btnXg"), client);
    m_btnXg->setCursor(Qt::PointingHandCursor);
    m_btnXg->setStyleSheet(QStringLiteral("#btnXg{color:#2F7CF6;border:none;background:transparent;padding:0;}"));
    m_comServer = new CloudServerCombox(client);
    m_comServer->setObjectName(QStringLiteral("comServer"));
    m_comServer->setFixedSize(px(220), px(32));
    auto label = [client](const QString &text) { return new QLabel(text, client); };
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(px(8));
    grid->setVerticalSpacing(px(8));
    grid->addWidget(label(QStringLiteral("影响因素：")), 0, 0, Qt::AlignTop);
    auto *factors = new QHBoxLayout;
    factors->setSpacing(px(6));
    const QList<QPair<QString, QLabel *>> pairs = {
        {QStringLiteral("时间："), m_lblSjsz}, {QStringLiteral("地点:"), m_lblDdsz}, {QStringLiteral("价格:"), m_lblHbsz}};
    for (const auto &pair : pairs) {
        factors->addWidget(label(pair.first));
        factors->addWidget(pair.second);
        factors->addSpacing(px(16));
    }
    factors->addWidget(m_btnXg);
    factors->addStretch();
    grid->addLayout(factors, 0, 1);
    grid->addWidget(label(QStringLiteral("应用范围：")), 1, 0);
    grid->addWidget(m_lblYyfwz, 1, 1);
    grid->addWidget(label(QStringLiteral("材价来源：")), 2, 0);
    grid->addWidget(m_comServer, 2, 1, Qt::AlignLeft);
    grid->addWidget(label(QStringLiteral("价表选择：")), 3, 0, Qt::AlignTop);
    grid->setColumnStretch(1, 1);
    setClCount(0);
    return grid;
}

void TCjyjc::setLblSjsz(const QString &date)
{
    m_lblSjsz->setText(date);
}

void TCjyjc::setLblDdsz(const QString &place)
{
    m_lblDdsz->setText(place);
}

void TCjyjc::setLblHbsz(const QString &taxMode)
{
    m_lblHbsz->setText(MaterialCheckRules::priceBasisLabel(taxMode, m_lblHbsz->text()));
}

void TCjyjc::setLblDqjjb(const QString &label)
{
    m_dqjjb = label;
}

void TCjyjc::setClCount(int count)
{
    m_lblYyfwz->setText(QStringLiteral("当前材料共(<font color = red>%1</font>)项").arg(count));
}

QString TCjyjc::timeText() const
{
    return m_lblSjsz->text();
}

QString TCjyjc::placeText() const
{
    return m_lblDdsz->text();
}

QString TCjyjc::priceText() const
{
    return m_lblHbsz->text();
}

void TCjyjc::slotTimeAndPathChanged(const QString &time, const QString &place)
{
    GUARDED(kSource, [&] {
        setLblSjsz(time);
        setLblDdsz(place);
    });
}

void TCjyjc::Modify()
{
    GUARDED(kSource, [&] {
        if (m_yxys)
            return;
        m_yxys = new TCloudCLDialog_Yxys(this);
        m_yxys->CreateUI();
        m_yxys->setComSjText(timeText());
        m_yxys->placeField()->setText(placeText());
        m_yxys->timeField()->installEventFilter(this);
        m_yxys->placeField()->installEventFilter(this);
        TCloudCLDialog_Yxys *yxys = m_yxys;
        connect(yxys->clearButton(), &QPushButton::clicked, yxys, [yxys] { yxys->clearPlace(); });
        connect(yxys->confirmButton(), &QPushButton::clicked, yxys, [yxys] { yxys->confirm(); });
        connect(yxys, &InfluenceFactorDialog::signalTimeAndPath, this, &TCjyjc::slotTimeAndPathChanged);
        bool sync = false;
        ChildDialog::run(this, yxys, [&](int) { sync = yxys->isConfirmed() && yxys->getChecked(); });
        if (sync)
            emit signalYxysChanged(timeText(), placeText());
    });
}

bool TCjyjc::eventFilter(QObject *watched, QEvent *event)
{
    // The material variant has no "修改" buttons: a click on a field picks.
    // The event type comes first: while the picker is being destroyed its
    // fields still send events, and the pointer must not be read then.
    if (event->type() == QEvent::MouseButtonRelease && m_yxys) {
        if (watched == m_yxys->timeField())
            m_yxys->pickTime();
        else if (watched == m_yxys->placeField())
            m_yxys->pickPlace();
    }
    return zTitleModal::eventFilter(watched, event);
}

void TCjyjc::slotRequestJbData()
{
    GUARDED(kSource, [&] {
        MaterialLibraryList::load(GuardSite(kSource, this), getCurrServer(), m_gdTable, m_libraryIds,
                                  {kCaseProjects});
    });
}

void TCjyjc::QdButton()
{
    GUARDED(kSource, [&] {
        if (!serverChoice()->checkServer(this))
            return;
        QString name = MaterialLibraryList::selectedText(m_gdTable);
        if (MaterialLibraryList::selectedRow(m_gdTable) < 0) {
            showMessage(QStringLiteral("提示"), QStringLiteral("请选择一条价表"),
                        {QStringLiteral("确定"), QStringLiteral("取消")}, this);
            return;
        }
        m_params.setCaseProject(name == kCaseProjects);
        if (priceText() == QStringLiteral("不含税"))
            m_params.setTaxBasis(0);
        m_params.setPlaceCode(placeCode(MaterialCheckRules::reducePlace(placeText())));
        QString id = name == kCaseProjects ? QStringLiteral("-999") : m_libraryIds.value(name);
        LtdInfo *server = getCurrServer();
        close();
        emit signalCheckData(server, id, m_params, name);
    });
}

QString TCjyjc::placeCode(const QString &place) const
{
    DBM::clsDAC dac(PlaceDictionary::ensureDatabase(), true);
    DBM::clsDACResult r = dac.execSql(QStringLiteral("SELECT * FROM subset_dd WHERE name = '%1';").arg(place));
    QString code;
    while (r.next())
        code = r.value(QStringLiteral("sysCode")).toString();
    dac.closeDB();
    return code;
}

void TCjyjc::GbButton()
{
    close();
}
