#pragma once
#include "ycctargetdialog.h"

// "项目特征云存储": where the item features of a batch of bills are stored.
class YccXmtzycc : public YccTargetDialog
{
    Q_OBJECT
public:
    explicit YccXmtzycc(QWidget *parent = nullptr);
};
