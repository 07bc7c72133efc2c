#pragma once
#include "influencefactordialog.h"

// Influence factors of the current-bill pricing browser. It has no slots of
// its own: the owner connects timeButton(), confirmButton() ... to the
// behaviour it wants (pickTime(), confirm() ...). "关闭" closes it.
class TVelDqqdznzj_Yxys : public InfluenceFactorDialog
{
    Q_OBJECT
public:
    explicit TVelDqqdznzj_Yxys(QWidget *parent = nullptr);
    static InfluenceFactorLayout layout();
    using InfluenceFactorDialog::setComDdText;
};
