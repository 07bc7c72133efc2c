#include "tqdtjyjc_yxys.h"

#include <hostapi/exceptionguard.h>

#include <QPushButton>

TQdtjyjc_Yxys::TQdtjyjc_Yxys(QWidget *parent)
    : InfluenceFactorDialog(layout(), parent)
{
}

InfluenceFactorLayout TQdtjyjc_Yxys::layout()
{
    InfluenceFactorLayout l;
    l.sourceName = "Qddjyjc";
    l.timeCaption = QStringLiteral("时间：");
    l.placeCaption = QStringLiteral("地点:");
    l.clearText = QStringLiteral("清空");
    l.closeText = QStringLiteral("关闭");
    // No blank after the asterisk: the statement is kept as this dialog has it.
    l.placeQuery = QStringLiteral("SELECT *FROM subset_dd WHERE sid = '%1';");
    return l;
}

void TQdtjyjc_Yxys::wireButtons()
{
    disconnect(closeButton(), nullptr, this, nullptr);
    connect(timeButton(), &QPushButton::clicked, this, &TQdtjyjc_Yxys::slotComSjClicked);
    connect(placeButton(), &QPushButton::clicked, this, &TQdtjyjc_Yxys::slotComDdClicked);
    connect(clearButton(), &QPushButton::clicked, this, &TQdtjyjc_Yxys::slotBtnXgClicked);
    connect(confirmButton(), &QPushButton::clicked, this, &TQdtjyjc_Yxys::okButton);
    connect(closeButton(), &QPushButton::clicked, this, &TQdtjyjc_Yxys::GbButton);
}

void TQdtjyjc_Yxys::slotComSjClicked()
{
    pickTime();
}

void TQdtjyjc_Yxys::slotComDdClicked()
{
    pickPlace();
}

void TQdtjyjc_Yxys::slotBtnXgClicked()
{
    clearPlace();
}

void TQdtjyjc_Yxys::okButton()
{
    confirm();
}

void TQdtjyjc_Yxys::GbButton()
{
    GUARDED("Qddjyjc", [&] { actCancel(); });
}
