#include "tveldqqdznzj_yxys.h"

TVelDqqdznzj_Yxys::TVelDqqdznzj_Yxys(QWidget *parent)
    : InfluenceFactorDialog(layout(), parent)
{
}

InfluenceFactorLayout TVelDqqdznzj_Yxys::layout()
{
    InfluenceFactorLayout l;
    l.sourceName = "VelDqqdznzj";
    l.timeCaption = QStringLiteral("时间：");
    l.placeCaption = QStringLiteral("地点:");
    l.timeButton = true;  // the single "修改"
    l.placeButton = false;
    l.closeText = QStringLiteral("关闭");
    l.ownSlots = false;
    l.placeQuery = QStringLiteral("SELECT * FROM subset_dd WHERE sid = '%1';");
    return l;
}
