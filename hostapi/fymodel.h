#pragma once
#include "cloudfymb.h"
#include "ztitlemodal.h"

#include <QList>

class zTableModel;
class zTableView;

// The host's fee dialog: the fee template (费用模板) of one composition line,
// one row per fee line in list order under the six columns "费用编号" "fybh",
// "费用名称" "fymc", "计算公式" "jjgs", "费率" "fl", "金额" "jl",
// "计价表字段" "jjbzd". Construct with the line's fee list, call CreateUI,
// then ShowModal.
class FyModel : public zTitleModal
{
    Q_OBJECT
public:
    explicit FyModel(const QList<cloudFymb> &fees, QWidget *parent = nullptr);

    // Builds the table and buttons; a second call does nothing.
    void CreateUI();

    // The six fee columns, each 120 wide; shared with the module's own fee
    // template dialog so both show the same table.
    static void declareColumns(zTableModel *model);
    // One row per fee line, in list order.
    static void appendFees(zTableModel *model, const QList<cloudFymb> &fees);

    zTableModel *tableModel() const { return m_model; }
    zTableView *tableView() const { return m_view; }

private:
    QList<cloudFymb> m_fees;
    zTableModel *m_model = nullptr;
    zTableView *m_view = nullptr;
};
