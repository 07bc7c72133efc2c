#include "cloudclsavedialog_fail.h"

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/zstandardtreenodedata.h>
#include <hostapi/ztreemodel.h>
#include <hostapi/ztreeview.h>

#include <QColor>
#include <QHeaderView>
#include <QVBoxLayout>

namespace {
const char kSource[] = "CloudCLSaveDialogm";
}

CloudCLSaveDialog_fail::CloudCLSaveDialog_fail(QList<CloudCjyjcBean> &records, QWidget *parent)
    : zTitleModal(parent)
{
    GUARDED(kSource, [&] {
        OnlyClose();
        SetCaption(QStringLiteral("查看保存失败的材料"));
        setScaledFixedSize(560, 400);
        m_model = new zTreeModel(this);
        m_model->addColumn(QStringLiteral("材料编码"), QStringLiteral("clbm"), 120);
        m_model->addColumn(QStringLiteral("材料名称、型号"), QStringLiteral("clmc"), 260);
        m_model->addColumn(QStringLiteral("失败原因"), QStringLiteral("sbyy"), 130);
        zStandardTreeNodeData root;
        for (const CloudCjyjcBean &r : records) {
            zStandardTreeNodeData *row = root.addChild();
            row->setCell(QStringLiteral("clbm"), r.getGgxh());
            row->setCell(QStringLiteral("clmc"), QString(r.getClmc() + QLatin1Char(' ') + r.getDw()));
            row->setCell(QStringLiteral("sbyy"), QStringLiteral("没有调价信息"));
            row->setCellForeground(QStringLiteral("sbyy"), QColor(255, 0, 0));
        }
        m_model->setRootData(root);
        auto *view = new zTreeView(clientWidget());
        view->setObjectName(QStringLiteral("gdTree"));
        view->setModel(m_model);
        view->header()->setStretchLastSection(true);
        auto *body = new QVBoxLayout;
        const int m = InterfaceAdaptation::scaled(14);
        body->setContentsMargins(m, m, m, m);
        body->addWidget(view, 1);
        auto *buttons = new ButtonRow(clientWidget());
        buttons->setButtonSize(72, 28);
        buttons->addOk(this);
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
    });
}
