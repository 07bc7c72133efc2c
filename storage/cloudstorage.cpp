#include "cloudstorage.h"

#include <hostapi/buttonrow.h>
#include <hostapi/interfaceadaptation.h>

#include <QVBoxLayout>

CloudStorage::CloudStorage(QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(QStringLiteral("项目特征云存储"));
    setFixedSize(InterfaceAdaptation::scaled(400), InterfaceAdaptation::scaled(170));
    StorageTargetLayout::Texts texts;
    texts.objectCaption = QStringLiteral("保存对象");
    texts.placeCaption = QStringLiteral("保存位置");
    texts.countEnd = QStringLiteral(" 项)");
    auto *page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->addLayout(m_form.build(this, texts), 1);
    auto *buttons = new ButtonRow(this);
    buttons->setButtonSize(70, 28);
    buttons->addOkCancel(this, 10);
    buttons->setContentsMargins(0, 0, InterfaceAdaptation::scaled(18), InterfaceAdaptation::scaled(14));
    page->addLayout(buttons);
}
