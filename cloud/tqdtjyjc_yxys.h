#pragma once
#include "influencefactordialog.h"

// Influence factors of the unit-price check wizard.
class TQdtjyjc_Yxys : public InfluenceFactorDialog
{
    Q_OBJECT
public:
    explicit TQdtjyjc_Yxys(QWidget *parent = nullptr);
    static InfluenceFactorLayout layout();

    using InfluenceFactorDialog::setComDdText;

public slots:
    void slotComSjClicked();
    void slotComDdClicked();
    void slotBtnXgClicked();
    void okButton();
    void GbButton();

protected:
    void wireButtons() override;
};
