#include "cloudsources.h"
#include "cloudserverchoice.h"
#include "cloudsourcerules.h"

#include <hostapi/childdialog.h>
#include <hostapi/cloudprocheck.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/globalsettingsinfo.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/jsmsbusiness.h>
#include <hostapi/messagebox.h>
#include <hostapi/projectsettinghelper.h>

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

namespace {
QHBoxLayout *rowLayout(QWidget *row, const QString &name)
{
    row->setObjectName(name);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(InterfaceAdaptation::scaled(10));
    return layout;
}

QPushButton *linkButton(const QString &text, const QString &name, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("#%1{color:#2F7CF6;border:none;background:transparent;padding:0;}"
                                         "#%1:hover{text-decoration:underline;}"
                                         "#%1:disabled{color:#A8ABB2;}")
                              .arg(name));
    return button;
}
}

CloudSources::CloudSources(const CloudSourcesOptions &options, QWidget *dialog)
    : QObject(dialog), m_options(options), m_dialog(dialog)
{
    buildSourcesRow(dialog);
    buildSelectionRow(dialog);
    setMode(m_options.initialMode);
    readChecks();
    connect(m_chkBzqd, &QCheckBox::toggled, this, &CloudSources::gcTypeClicked);
    connect(m_chkJlqd, &QCheckBox::toggled, this, &CloudSources::gcTypeClicked);
    connect(m_btnGcsx, &QPushButton::clicked, this, &CloudSources::slotGCSXClicked);
    connect(m_btnClear, &QPushButton::clicked, this, &CloudSources::slotClearClicked);
}

void CloudSources::buildSourcesRow(QWidget *dialog)
{
    m_sourcesRow = new QWidget(dialog);
    QHBoxLayout *layout = rowLayout(m_sourcesRow, QStringLiteral("widgetGcly"));
    m_chkBzqd = new QCheckBox(QStringLiteral("标准清单"), m_sourcesRow);
    m_chkBzqd->setObjectName(QStringLiteral("chkBzqd"));
    m_chkJlqd = new QCheckBox(CloudSourceRules::accumulatedCaption(nullptr), m_sourcesRow);
    m_chkJlqd->setObjectName(QStringLiteral("chkJlqd"));
    m_btnGcsx = linkButton(m_options.filterText, QStringLiteral("btnGcsx"), m_sourcesRow);
    layout->addWidget(m_chkBzqd);
    layout->addWidget(m_chkJlqd);
    layout->addWidget(m_btnGcsx);
    layout->addStretch();
}

void CloudSources::buildSelectionRow(QWidget *dialog)
{
    m_selectionRow = new QWidget(dialog);
    QHBoxLayout *layout = rowLayout(m_selectionRow, QStringLiteral("widgetYxgc"));
    auto *caption = new QLabel(QStringLiteral("已选工程："), m_selectionRow);
    caption->setObjectName(QStringLiteral("lblYxgc"));
    m_lblGcmc = new QLabel(m_selectionRow);
    m_lblGcmc->setObjectName(QStringLiteral("lblGcmc"));
    m_lblGcmc->setTextFormat(Qt::PlainText);
    // The text is elided to whatever width the row leaves, never the reverse.
    m_lblGcmc->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_lblGcmc->installEventFilter(this);
    m_btnClear = linkButton(QStringLiteral("清除选择"), QStringLiteral("btnClear"), m_selectionRow);
    layout->addWidget(caption);
    layout->addWidget(m_lblGcmc, 1);
    layout->addWidget(m_btnClear);
    m_selectionRow->hide();
}

void CloudSources::follow(CloudServerChoice *servers)
{
    m_servers = servers;
    connect(servers, &CloudServerChoice::signalReloadData, this, &CloudSources::serverChanged);
    connect(servers, &CloudServerChoice::signalServersReset, this, &CloudSources::serverChanged);
}

int CloudSources::mode() const
{
    return CloudSourceRules::mode(m_chkBzqd->isChecked(), m_chkJlqd->isChecked());
}

QStringList CloudSources::projectIds() const
{
    return m_chkJlqd->isChecked() ? m_selection.ids() : QStringList();
}

bool CloudSources::checkSource() const
{
    if (mode() != 0)
        return true;
    showMessageBox(QStringLiteral("请勾选清单方案来源"), m_dialog);
    return false;
}

void CloudSources::setMode(int mode)
{
    const QSignalBlocker standard(m_chkBzqd);
    const QSignalBlocker accumulated(m_chkJlqd);
    m_chkBzqd->setChecked(CloudSourceRules::hasStandard(mode));
    m_chkJlqd->setChecked(CloudSourceRules::hasAccumulated(mode));
}

void CloudSources::readChecks()
{
    GUARDED(site(), [&] {
        if (m_options.checkStorage != CloudSourcesOptions::CheckStorage::None) {
            const GlobalSettingsInfo info = ProjectSettingHelper::GetGlobalSettingsInfo();
            setMode(CloudSourceRules::mode(info.bzqdChecked, info.jlqdChecked));
        }
        applyChecks();
    });
}

void CloudSources::gcTypeClicked()
{
    GUARDED(site(), [&] {
        applyChecks();
        if (m_options.checkStorage == CloudSourcesOptions::CheckStorage::ReadWrite)
            writeChecks();
    });
}

void CloudSources::applyChecks()
{
    const int current = mode();
    m_btnGcsx->setEnabled(CloudSourceRules::hasAccumulated(current));
    m_btnGcsx->setHidden(m_options.hideLinkWithoutSource && current == 0);
    setGcCheckedName();
}

void CloudSources::writeChecks() const
{
    GlobalSettingsInfo info = ProjectSettingHelper::GetGlobalSettingsInfo();
    info.bzqdChecked = m_chkBzqd->isChecked();
    info.jlqdChecked = m_chkJlqd->isChecked();
    ProjectSettingHelper::SetGlobalSettingsInfo(info);
}

LtdInfo *CloudSources::currentServer() const
{
    return m_servers ? m_servers->getCurrServer() : nullptr;
}

void CloudSources::serverChanged()
{
    GUARDED(site(), [&] {
        m_chkJlqd->setText(CloudSourceRules::accumulatedCaption(currentServer()));
        m_selection.clear();
        readGcid();
        setGcCheckedName();
    });
}

void CloudSources::readGcid()
{
    GUARDED(site(), [&] {
        m_selection = CloudProjectSelection::read(CloudSourceRules::selectionKey(currentServer()));
    });
}

void CloudSources::setGcCheckedName()
{
    showNames();
    m_selectionRow->setVisible(
        CloudSourceRules::selectionRowVisible(m_chkJlqd->isChecked(), m_selection.names().size()));
}

void CloudSources::showNames()
{
    const QStringList names = m_selection.names();
    m_lblGcmc->setText(CloudSourceRules::selectionText(names, m_lblGcmc->fontMetrics(),
                                                       m_lblGcmc->contentsRect().width()));
    m_lblGcmc->setToolTip(names.join(QStringLiteral("、")));
}

bool CloudSources::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == m_lblGcmc)
        showNames();
    return QObject::eventFilter(watched, event);
}

void CloudSources::slotGCSXClicked()
{
    GUARDED(site(), [&] {
        LtdInfo *server = currentServer();
        if (!server) {
            showMessageBox(QStringLiteral("请选择服务器"), m_dialog);
            return;
        }
        TQDNodeInfo info;
        JsMsBusiness::GetQDSaveAttr(m_unitWork, m_table, info);
        auto *filter = new CloudProCheck(m_selection.choiceTexts(), server, m_sjkm, info, m_dialog);
        filter->setIscondNull(false);
        connect(filter, &CloudProCheck::signalCheckGcMaps, this, &CloudSources::slotGCSXSured);
        // Its list request runs a local event loop, during which the dialog may die.
        QPointer<CloudProCheck> alive(filter);
        if (filter->InitGcInfo() && alive)
            ChildDialog::run(m_dialog, filter);
        else
            delete alive.data();
    });
}

void CloudSources::slotGCSXSured(const QList<QMap<QString, QVariant>> &projects)
{
    GUARDED(site(), [&] {
        m_selection.setProjects(projects);
        m_selection.write(CloudSourceRules::selectionKey(currentServer()));
        setGcCheckedName();
    });
}

void CloudSources::slotClearClicked()
{
    GUARDED(site(), [&] {
        m_selection.clear();
        m_selection.write(CloudSourceRules::selectionKey(currentServer()));
        setGcCheckedName();
    });
}

GuardSite CloudSources::site() const
{
    return GuardSite(m_options.source.constData(), m_dialog.data());
}
