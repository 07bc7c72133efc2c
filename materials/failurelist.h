#pragma once
#include <QString>

class zTableModel;
class zTitleModal;

// The body both failure lists share: caption "查看保存失败的材料", the grid
// (code, "材料名称、型号", "失败原因") and "确定".
class FailureList
{
public:
    // Lays the list out in `dialog`; the code column's key is `codeKey`.
    static zTableModel *build(zTitleModal *dialog, const QString &codeKey);
    // The red "没有调价信息" of the last row.
    static void appendReason(zTableModel *model);
};
