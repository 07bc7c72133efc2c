#pragma once
#include "influencefactordialog.h"

// Influence factors of the unit-price check browser.
class TVelQddjjc_Yxys : public InfluenceFactorDialog
{
    Q_OBJECT
public:
    explicit TVelQddjjc_Yxys(QWidget *parent = nullptr);
    static InfluenceFactorLayout layout();

    using InfluenceFactorDialog::setComDdText;

public slots:
    void slotComSjClicked();
    void slotComDdClicked();
    void slotBtnXgClicked();
    void okButton();

protected:
    void wireButtons() override;
};
