#include "tcloudcldialog_yxys.h"

TCloudCLDialog_Yxys::TCloudCLDialog_Yxys(QWidget *parent)
    : InfluenceFactorDialog(layout(), parent)
{
}

InfluenceFactorLayout TCloudCLDialog_Yxys::layout()
{
    InfluenceFactorLayout l;
    l.sourceName = "CloudCLDialog";
    l.timeCaption = QStringLiteral("时间:");
    l.placeCaption = QStringLiteral("地点:");
    l.timeButton = false;
    l.placeButton = false;
    l.clearText = QStringLiteral("清空");
    l.closeText = QStringLiteral("取消");
    l.ownSlots = false;
    l.placeQuery = QStringLiteral("SELECT * FROM subset_dd WHERE sid = '%1';");
    return l;
}
