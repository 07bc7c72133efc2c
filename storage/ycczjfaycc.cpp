#include "ycczjfaycc.h"

YccZjfaycc::YccZjfaycc(QWidget *parent)
    : YccTargetDialog(QStringLiteral("组价方案云存储"), parent)
{
}
