#pragma once
#include "ycctargetdialog.h"

// "组价方案云存储": where the pricing schemes of a batch of bills are stored.
class YccZjfaycc : public YccTargetDialog
{
    Q_OBJECT
public:
    explicit YccZjfaycc(QWidget *parent = nullptr);
};
