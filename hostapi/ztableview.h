#pragma once
#include <QMetaObject>
#include <QTableView>
#include <QVariant>

class zTableDelegate;
class zTableModel;

// The host table view over a zTableModel (see there for filling it).
//
// Defaults: whole-row single selection, no row header, no editing, declared
// column widths (scaled). It follows the model's spans, and drives the
// special cells through zTableDelegate: a click on a check-box cell toggles it
// in the model and emits signalCheckBoxClicked with the new state; a push
// button emits signalButtonClicked; a link emits signalLinkClicked. Every
// click on a cell also emits cellClicked(row, value of the clicked cell).
class zTableView : public QTableView
{
    Q_OBJECT
public:
    explicit zTableView(QWidget *parent = nullptr);

    // Accepts any model; spans and column widths follow a zTableModel.
    void setModel(QAbstractItemModel *model) override;
    zTableModel *tableModel() const;
    // Selects and makes current the whole row (nothing for a row outside).
    void selectRowAt(int row);
    // setFixedHeight for the header, scaled.
    void setHeaderHeight(int height);

signals:
    void cellClicked(int row, const QVariant &value);
    void signalCheckBoxClicked(QModelIndex index, Qt::CheckState state);
    void signalButtonClicked(const QModelIndex &index);
    void signalLinkClicked(const QModelIndex &index);

private:
    void applySpans();
    void applyWidths();

    zTableDelegate *m_delegate = nullptr;
    QList<QMetaObject::Connection> m_modelConnections;
};
