#pragma once
#include "influencefactordialog.h"

// Influence factors of the material price check. It has no slots of its own:
// the owner connects clearButton(), confirmButton() ... to the behaviour it
// wants (clearPlace(), confirm() ...). "取消" closes it.
class TCloudCLDialog_Yxys : public InfluenceFactorDialog
{
    Q_OBJECT
public:
    explicit TCloudCLDialog_Yxys(QWidget *parent = nullptr);
    static InfluenceFactorLayout layout();
};
