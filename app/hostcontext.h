#pragma once
#include <QList>
#include <QString>

#include <functional>

class BaseDataItem;
class GljBean;
class JJBTableBase;
class MaterialTableModel;
class QItemSelectionModel;
class ProjectDocument;
class QWidget;

// What a module dialog gets from the host when it is opened: the parent
// window, the open project and the current bill with its table.
class HostContext
{
public:
    QWidget *window = nullptr;
    ProjectDocument *project = nullptr;
    BaseDataItem *currentBill = nullptr;
    JJBTableBase *currentTable = nullptr;
    // The material list and its selection.
    MaterialTableModel *materials = nullptr;
    QItemSelectionModel *materialSelection = nullptr;
    // True while the offscreen tour runs: every modal run is grabbed to PNG
    // and rejected, every message box answered with 0.
    bool tour = false;

    // Makes `bill` current in the host window (previous/next bill requests).
    void setCurrentBill(BaseDataItem *bill);
    // The subject code of the current bill: its kind upper-cased, "自编" for a
    // self-made bill.
    QString sjkm() const;
    // The current table's caption for "应用范围" labels.
    QString scopeLabel() const;
    // The materials selected in the material list, in list order.
    QList<GljBean *> selectedMaterials() const;
    // The bills the user selected in the visible bill tree, in tree order; a
    // selected section stands for its bills.
    QList<BaseDataItem *> selectedBills() const { return billSelection ? billSelection() : QList<BaseDataItem *>(); }
    std::function<QList<BaseDataItem *>()> billSelection;

    std::function<void(BaseDataItem *)> onCurrentBillChanged;
    // A non-modal window that follows the bill the user makes current.
    std::function<void(BaseDataItem *)> onBillFollowed;
    // Shades `bills` in the host's bill tree (none: no shading).
    std::function<void(const QList<BaseDataItem *> &)> onHighlightBills;
};
