#include "materialdeviationhost.h"
#include "dialogregistry.h"
#include "hostcontext.h"
#include "materialdeviationchart.h"
#include "materialtablemodel.h"

#include <materials/tsztcxzpcl.h>

#include <hostapi/exceptionguard.h>
#include <hostapi/messagebox.h>

namespace {
const char kSource[] = "velora-host";
}

QWidget *MaterialDeviationHost::openRate(HostContext &host)
{
    GUARDED(kSource, [&] {
        if (!host.materials)
            return;
        TSztcxzpcl dialog(host.window);
        dialog.setPcl(host.materials->deviations().rate());
        MaterialTableModel *model = host.materials;
        QObject::connect(&dialog, &TSztcxzpcl::setPclMark, &dialog,
                         [model](const QString &rate) { model->setHighlightRate(rate); });
        dialog.ShowModal();
    });
    return nullptr;
}

QWidget *MaterialDeviationHost::openChart(HostContext &host)
{
    GUARDED(kSource, [&] {
        if (!host.materials || (host.materials->deviations().isEmpty() && !host.tour)) {
            showMessageBox(QStringLiteral("请先进行材价云检查"), host.window);
            return;
        }
        const auto ranking =
            host.materials->deviations().ranking(host.materials->materials(), MaterialDeviationChart::Limit);
        MaterialDeviationChart dialog(ranking, host.window);
        dialog.ShowModal();
    });
    return nullptr;
}

VELORA_REGISTER_DIALOG(materialhighlight, {QStringLiteral("materialhighlight"), QStringLiteral("突出显示偏差率"),
                                           MaterialDeviationHost::openRate, MaterialDeviationHost::openRate, true});
VELORA_REGISTER_DIALOG(materialchart, {QStringLiteral("materialchart"), QStringLiteral("材价偏差分析"),
                                       MaterialDeviationHost::openChart, MaterialDeviationHost::openChart, true});
