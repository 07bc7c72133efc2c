#include "ttotalycc.h"
#include "storagerequests.h"
#include "tbzqdycc.h"
#include "tycc.h"

#include <cloud/cloudexchange.h>
#include <cloud/cloudserverchoice.h>

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/messagebox.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/wizardsteps.h>
#include <hostapi/ztabcontent.h>

#include <QPushButton>
#include <QUuid>
#include <QVBoxLayout>

namespace {
const char kSource[] = "TotalYcc";
}

TTotalYcc::TTotalYcc(QWidget *parent)
    : zTitleModal(parent)
{
    setScaledFixedSize(680, 500);
    OnlyClose();
    SetCaption(QStringLiteral("云存储"));
    setBackgroundColor(QColor(0xF5, 0xF7, 0xF9));
}

TBzqdycc *TTotalYcc::libraryPage() const
{
    return m_bzqdycc;
}

TYcc *TTotalYcc::chapterPage() const
{
    return m_ycc;
}

void TTotalYcc::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_pages)
            return;
        QWidget *client = clientWidget();
        m_pages = new zTabContent(client);
        m_pages->setObjectName(QStringLiteral("tabContent"));
        m_pages->setTabBarVisible(false);
        auto *buttons = new ButtonRow(client);
        m_btnPrevious = buttons->addButton(QStringLiteral("上一步"), QStringLiteral("btnSyb"));
        buttons->addGap(5);
        m_btnNext = buttons->addButton(QStringLiteral("下一步"), QStringLiteral("btnXyb"));
        m_btnOk = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnQd"));
        buttons->addGap(5);
        m_btnCancel = buttons->addButton(QStringLiteral("取消"), QStringLiteral("btnQx"));
        auto *body = new QVBoxLayout;
        body->setContentsMargins(0, 0, InterfaceAdaptation::scaled(18), InterfaceAdaptation::scaled(14));
        body->addWidget(m_pages, 1);
        body->addSpacing(InterfaceAdaptation::scaled(8));
        body->addLayout(buttons);
        clientLayout()->addLayout(body);

        connect(m_btnNext, &QPushButton::clicked, this, &TTotalYcc::NextStep);
        connect(m_btnPrevious, &QPushButton::clicked, this, [this] { Switchover(0); });
        connect(m_btnOk, &QPushButton::clicked, this, &TTotalYcc::QdButton);
        connect(m_btnCancel, &QPushButton::clicked, this, &QWidget::close);
        m_steps = new WizardSteps(m_pages, this);
        m_steps->addStep([this] { return firstPage(); }, {m_btnNext, m_btnCancel}, m_btnNext);
        m_steps->addStep([this] { return secondPage(); }, {m_btnPrevious, m_btnOk, m_btnCancel}, m_btnOk);
        m_steps->closeOnEscape(this);
        Switchover(0);
    });
}

TBzqdycc *TTotalYcc::firstPage()
{
    m_bzqdycc = new TBzqdycc(m_pages);
    m_bzqdycc->CreateUI();
    CloudServerChoice *choice = m_bzqdycc->serverChoice();
    connect(choice, &CloudServerChoice::signalServersReset, this, [this] { Switchover(0); });
    return m_bzqdycc;
}

TYcc *TTotalYcc::secondPage()
{
    m_ycc = new TYcc(m_pages);
    m_ycc->CreateUI();
    m_ycc->UpText(m_scope);
    return m_ycc;
}

void TTotalYcc::Switchover(short step)
{
    GUARDED(kSource, [&] {
        curStep = step;
        m_steps->showStep(step);
        if (step != 1 || !m_ycc || !m_bzqdycc)
            return;
        LtdInfo *server = m_bzqdycc->getCurrServer();
        const QString library = m_bzqdycc->GetXmk();
        // Back and forth on the same library keeps the tree as it was opened.
        if (server == m_loadedServer && library == m_loadedLibrary)
            return;
        m_loadedServer = server;
        m_loadedLibrary = library;
        m_ycc->loadTree(server, library);
    });
}

void TTotalYcc::NextStep()
{
    GUARDED(kSource, [&] {
        if (!m_bzqdycc || !m_bzqdycc->serverChoice()->checkServer(this))
            return;
        if (!m_bzqdycc->mayWrite())
            return;
        if (m_bzqdycc->GetXmk().isEmpty()) {
            showMessageBox(QStringLiteral("请选择清单库"), this);
            return;
        }
        Switchover(1);
    });
}

void TTotalYcc::QdButton()
{
    GUARDED(kSource, [&] {
        if (!m_bzqdycc || !m_ycc)
            return;
        const QString refusal = m_ycc->chapterChoice().refusal();
        if (!refusal.isEmpty()) {
            showMessageBox(refusal, this);
            return;
        }
        const int content = m_bzqdycc->getQdContent();
        LtdInfo *server = m_bzqdycc->getCurrServer();
        if (!m_bzqdycc->mayWrite() || !saveQdStart(server))
            return;
        const QString taskId = m_taskId;
        const QString chapterId = m_ycc->getZjid();
        const QString defaultChapter = m_ycc->GmlChecked() ? QString() : m_ycc->getMRId();
        const bool child = m_ycc->isChildZjBtj();
        const int level = m_ycc->getZjLevel();
        const bool replace = m_ycc->isReplaceSave();
        QPointer<TTotalYcc> self(this);
        close();
        if (self)
            emit signalCheckQdData(server, taskId, chapterId, content, defaultChapter, child, level, replace);
    });
}

bool TTotalYcc::saveQdStart(LtdInfo *server)
{
    m_taskId = QUuid::createUuid().toString();
    const QString zjid = m_ycc->isAddMRZj() ? QString() : m_ycc->getZjid();
    const CloudRequest request =
        StorageRequests::savingTask(server, m_ycc->isReplaceSave(), m_taskId, m_qdcount, GetXmk(), zjid);
    CloudExchange cloud(GuardSite(kSource, this));
    return cloud.call(request).has_value();
}

void TTotalYcc::resetKvData()
{
    GUARDED(kSource, [&] {
        if (m_bzqdycc)
            m_bzqdycc->serverChoice()->resetKvData();
    });
}

void TTotalYcc::resetPriData(const QString &serverName)
{
    GUARDED(kSource, [&] {
        if (m_bzqdycc)
            m_bzqdycc->serverChoice()->resetPriData(serverName);
    });
}

void TTotalYcc::resetPriLogin(const QString &serverName)
{
    GUARDED(kSource, [&] {
        if (m_bzqdycc)
            m_bzqdycc->serverChoice()->resetPriLogin(serverName);
    });
}

void TTotalYcc::setQdcount(int count)
{
    m_qdcount = QString::number(count);
}

void TTotalYcc::UpText(const QString &scope)
{
    m_scope = scope;
    if (m_ycc)
        m_ycc->UpText(scope);
}

bool TTotalYcc::GetIsQdChecked() const
{
    return m_ycc && m_ycc->GetIsQdChecked();
}

QString TTotalYcc::GetQdColor() const
{
    return m_ycc ? m_ycc->GetQdColor() : QString();
}

QString TTotalYcc::GetXmk() const
{
    return m_bzqdycc ? m_bzqdycc->GetXmk() : QString();
}
