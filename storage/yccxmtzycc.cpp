#include "yccxmtzycc.h"

YccXmtzycc::YccXmtzycc(QWidget *parent)
    : YccTargetDialog(QStringLiteral("项目特征云存储"), parent)
{
}
