#include "velcjyjc_checkdetails.h"

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/round.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {
const char kSource[] = "VelCjyjc_CheckResult";
}

VelCjyjc_CheckDetails::VelCjyjc_CheckDetails(bool taxIncluded, QList<CloudCjyjcBean> &records, int key,
                                             QList<CloudCjyjcBean> &, double cloudPrice, double deviation,
                                             QString name, QWidget *parent)
    : zTitleModal(parent)
    , m_name(name)
{
    GUARDED(kSource, [&] {
        OnlyClose();
        SetCaption(QStringLiteral("查看对比材价详情"));
        setScaledFixedSize(900, 460);
        QList<CloudCjyjcBean> own;
        for (const CloudCjyjcBean &r : records)
            if (r.getGuid() == key)
                own << r;
        QWidget *client = clientWidget();
        m_lblMaterial = WidgetFactory::label(QStringLiteral("当前检查材料：%1").arg(own.isEmpty() ? QString()
                                                                                          : own.first().getClmc()),
                                             QStringLiteral("lblDqjcl"), client);
        auto *head = new QHBoxLayout;
        head->addWidget(m_lblMaterial);
        head->addSpacing(InterfaceAdaptation::scaled(30));
        head->addWidget(WidgetFactory::label(QStringLiteral("云材价"), QStringLiteral("lblYcj"), client));
        head->addWidget(WidgetFactory::label(Round(cloudPrice, 2, true), QStringLiteral("lblYcjz"), client));
        head->addSpacing(InterfaceAdaptation::scaled(30));
        head->addWidget(WidgetFactory::label(QStringLiteral("偏差率"), QStringLiteral("lblPcl"), client));
        head->addWidget(WidgetFactory::label(Round(deviation, 2, true) + QLatin1Char('%'), QStringLiteral("lblPclz"),
                                             client));
        head->addStretch();
        m_model = new zTableModel(this);
        auto *view = new zTableView(client);
        view->setObjectName(QStringLiteral("gdTable"));
        fill(taxIncluded, own);
        view->setModel(m_model);
        auto *body = new QVBoxLayout;
        const int m = InterfaceAdaptation::scaled(14);
        body->setContentsMargins(m, m, m, m);
        body->addLayout(head);
        body->addWidget(view, 1);
        auto *buttons = new ButtonRow(client);
        buttons->setButtonSize(72, 28);
        buttons->addOk(this);
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
    });
}

void VelCjyjc_CheckDetails::fill(bool taxIncluded, const QList<CloudCjyjcBean> &records)
{
    m_model->addColumn(QStringLiteral("序号"), QStringLiteral("xh"), 40);
    m_model->addColumn(QStringLiteral("材料名称"), QStringLiteral("clmc"), 110);
    m_model->addColumn(QStringLiteral("规格型号"), QStringLiteral("ggxh"), 90);
    m_model->addColumn(QStringLiteral("单位"), QStringLiteral("dw"), 44);
    m_model->addColumn(QStringLiteral("产地"), QStringLiteral("cd"), 60);
    m_model->addColumn(QStringLiteral("厂家"), QStringLiteral("cj"), 90);
    m_model->addColumn(QStringLiteral("价格基准时间"), QStringLiteral("jgjzsj"), 90);
    m_model->addColumn(QStringLiteral("工程地点"), QStringLiteral("gcdd"), 100);
    m_model->addColumn(taxIncluded ? QStringLiteral("单价（含税）") : QStringLiteral("单价（不含税）"),
                       QStringLiteral("dj"), 90);
    m_model->addColumn(QStringLiteral("项目名称"), QStringLiteral("xmmc"), 150);
    int n = 0;
    for (const CloudCjyjcBean &r : records) {
        m_model->addRow();
        m_model->appendCell(QStringLiteral("xh"), ++n);
        m_model->appendCell(QStringLiteral("clmc"), r.getClmc());
        m_model->appendCell(QStringLiteral("ggxh"), r.getGgxh());
        m_model->appendCell(QStringLiteral("dw"), r.getDw());
        m_model->appendCell(QStringLiteral("cd"), r.getCd());
        m_model->appendCell(QStringLiteral("cj"), r.getCj());
        m_model->appendCell(QStringLiteral("jgjzsj"), r.getJgjzsj());
        m_model->appendCell(QStringLiteral("gcdd"), r.getGcdd());
        m_model->appendCell(QStringLiteral("dj"), Round(r.getDj(), 2, true));
        m_model->appendCell(QStringLiteral("xmmc"), r.getXmmc());
    }
}
