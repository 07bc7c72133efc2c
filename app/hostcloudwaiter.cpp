#include "hostcloudwaiter.h"

#include <hostapi/cloudchannel.h>

#include <QApplication>
#include <QEventLoop>
#include <QProgressDialog>
#include <QTimer>

HostCloudWaiter::HostCloudWaiter(QWidget *window, std::function<QString()> serverText,
                                 std::function<void(const QString &)> showStatus)
    : m_window(window), m_serverText(std::move(serverText)), m_showStatus(std::move(showStatus))
{
}

QString HostCloudWaiter::waitText(const QString &server)
{
    return QStringLiteral("正在等待%1的回复…").arg(server);
}

void HostCloudWaiter::wait(CloudCall &call)
{
    QEventLoop quiet;
    QTimer::singleShot(QuietMs, &quiet, &QEventLoop::quit);
    QObject::connect(&call, &CloudCall::finished, &quiet, &QEventLoop::quit);
    if (!call.isFinished())
        quiet.exec(QEventLoop::ExcludeUserInputEvents);
    if (!call.isFinished())
        waitVisibly(call);
}

// The wait window is application-modal, so the loop may take user input:
// only its "取消" (or Esc) reaches anything.
void HostCloudWaiter::waitVisibly(CloudCall &call)
{
    const QString text = waitText(m_serverText ? m_serverText() : QString());
    QWidget *parent = QApplication::activeModalWidget() ? QApplication::activeModalWidget() : m_window.data();
    QProgressDialog panel(text, QStringLiteral("取消"), 0, 0, parent);
    panel.setObjectName(QStringLiteral("cloudWaitPanel"));
    panel.setWindowTitle(QStringLiteral("Velora"));
    panel.setWindowModality(Qt::ApplicationModal);
    panel.setAutoReset(false);
    panel.setAutoClose(false);
    panel.setMinimumDuration(0);
    QEventLoop loop;
    QObject::connect(&call, &CloudCall::finished, &loop, &QEventLoop::quit);
    QObject::connect(&panel, &QProgressDialog::canceled, &call, [&call] { call.finish(QByteArray()); });
    QApplication::setOverrideCursor(Qt::BusyCursor);
    if (m_showStatus)
        m_showStatus(text);
    panel.show();
    if (!call.isFinished())
        loop.exec();
    QApplication::restoreOverrideCursor();
    if (m_showStatus)
        m_showStatus(QString());
}
