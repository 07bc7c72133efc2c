#include "failurelist.h"

#include <hostapi/buttonrow.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>
#include <hostapi/ztitlemodal.h>

#include <QColor>
#include <QHeaderView>
#include <QVBoxLayout>

zTableModel *FailureList::build(zTitleModal *dialog, const QString &codeKey)
{
    dialog->OnlyClose();
    dialog->SetCaption(QStringLiteral("查看保存失败的材料"));
    dialog->setScaledFixedSize(560, 400);
    QWidget *client = dialog->clientWidget();
    auto *model = new zTableModel(dialog);
    model->addColumn(QStringLiteral("材料编码"), codeKey, 120);
    model->addColumn(QStringLiteral("材料名称、型号"), QStringLiteral("clmc"), 260);
    model->addColumn(QStringLiteral("失败原因"), QStringLiteral("sbyy"), 130);
    auto *view = new zTableView(client);
    view->setObjectName(QStringLiteral("gdTable"));
    view->setModel(model);
    view->horizontalHeader()->setStretchLastSection(true);
    auto *body = new QVBoxLayout;
    const int m = InterfaceAdaptation::scaled(14);
    body->setContentsMargins(m, m, m, m);
    body->addWidget(view, 1);
    auto *buttons = new ButtonRow(client);
    buttons->setButtonSize(72, 28);
    buttons->addOk(dialog);
    body->addLayout(buttons);
    dialog->clientLayout()->addLayout(body);
    return model;
}

void FailureList::appendReason(zTableModel *model)
{
    model->appendCell(QStringLiteral("sbyy"), QStringLiteral("没有调价信息"));
    model->setCellForeground(model->rowCount() - 1, QStringLiteral("sbyy"), QColor(255, 0, 0));
}
