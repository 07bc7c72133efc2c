#pragma once
#include <hostapi/cloudfymb.h>
#include <hostapi/ztitlemodal.h>

#include <QList>

class QPushButton;
class zTableModel;
class zTableView;

// The fee template (费用模板) of one composition line: its unit-price
// calculation program, one row per fee line, in the columns of the host's
// fee dialog.
class VelDqqDznzj_fymodal : public zTitleModal
{
    Q_OBJECT
public:
    explicit VelDqqDznzj_fymodal(QWidget *parent = nullptr);

    void CreateUI();
    void InitUI();
    // The composition line's fee lines; shown at once when the table exists.
    void setFymbList(const QList<cloudFymb> &fees);

    zTableModel *tableModel() const { return m_model; }
    zTableView *tableView() const { return m_table; }

public slots:
    void QdButton();
    void QxButton();

private:
    QList<cloudFymb> m_fees;
    zTableModel *m_model = nullptr;
    zTableView *m_table = nullptr;
    QPushButton *m_btnQd = nullptr;
    QPushButton *m_btnQx = nullptr;
};
