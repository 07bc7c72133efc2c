#include "pricecheckreporthost.h"
#include "dialogregistry.h"
#include "hostcontext.h"
#include "pricecheckreportrun.h"
#include "pricecheckreportwindow.h"

#include <QEventLoop>
#include <QObject>

QWidget *PriceCheckReportHost::open(HostContext &host)
{
    auto *window = new PriceCheckReportWindow(host, host.window);
    HostContext *context = &host;
    QObject::connect(window, &PriceCheckReportWindow::beyondBillsChanged, window,
                     [context](const QList<BaseDataItem *> &bills) {
                         if (context->onHighlightBills)
                             context->onHighlightBills(bills);
                     });
    window->show();
    return window;
}

QWidget *PriceCheckReportHost::tour(HostContext &host)
{
    auto *window = static_cast<PriceCheckReportWindow *>(open(host));
    QEventLoop loop;
    QObject::connect(window->run(), &PriceCheckReportRun::finished, &loop, &QEventLoop::quit);
    QObject::connect(window->run(), &PriceCheckReportRun::cancelled, &loop, &QEventLoop::quit);
    window->startCheck();
    if (window->isChecking())
        loop.exec();
    return window;
}

VELORA_REGISTER_DIALOG(pricecheckreport, {QStringLiteral("pricecheckreport"), QStringLiteral("工程单价检查报告"),
                                          PriceCheckReportHost::open, PriceCheckReportHost::tour});
