#include "tvelqddjjc_yxys.h"

#include <QPushButton>

TVelQddjjc_Yxys::TVelQddjjc_Yxys(QWidget *parent)
    : InfluenceFactorDialog(layout(), parent)
{
}

InfluenceFactorLayout TVelQddjjc_Yxys::layout()
{
    InfluenceFactorLayout l;
    l.sourceName = "VelQddjjc";
    l.timeCaption = QStringLiteral("时间：");
    l.placeCaption = QStringLiteral("地点:");
    l.clearText = QStringLiteral("清除");
    l.closeText = QStringLiteral("关闭");
    l.placeQuery = QStringLiteral("SELECT * FROM subset_dd WHERE sid = '%1';");
    l.styledFields = true;
    return l;
}

void TVelQddjjc_Yxys::wireButtons()
{
    connect(timeButton(), &QPushButton::clicked, this, &TVelQddjjc_Yxys::slotComSjClicked);
    connect(placeButton(), &QPushButton::clicked, this, &TVelQddjjc_Yxys::slotComDdClicked);
    connect(clearButton(), &QPushButton::clicked, this, &TVelQddjjc_Yxys::slotBtnXgClicked);
    connect(confirmButton(), &QPushButton::clicked, this, &TVelQddjjc_Yxys::okButton);
}

void TVelQddjjc_Yxys::slotComSjClicked()
{
    pickTime();
}

void TVelQddjjc_Yxys::slotComDdClicked()
{
    pickPlace();
}

void TVelQddjjc_Yxys::slotBtnXgClicked()
{
    clearPlace();
}

void TVelQddjjc_Yxys::okButton()
{
    confirm();
}
