#pragma once
#include <QTreeView>
#include <QVariant>

class zTableDelegate;
class zTreeModel;

// The host tree view over a zTreeModel: declared column widths (scaled), no
// editing, whole-row single selection, and the special cells of zTableDelegate
// with the same signals as zTableView. cellClicked carries the row among its
// siblings and the clicked cell's value.
class zTreeView : public QTreeView
{
    Q_OBJECT
public:
    explicit zTreeView(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;
    zTreeModel *treeModel() const;

signals:
    void cellClicked(int row, const QVariant &value);
    void signalCheckBoxClicked(QModelIndex index, Qt::CheckState state);
    void signalButtonClicked(const QModelIndex &index);
    void signalLinkClicked(const QModelIndex &index);

private:
    void applyWidths();

    zTableDelegate *m_delegate = nullptr;
    QList<QMetaObject::Connection> m_modelConnections;
};
