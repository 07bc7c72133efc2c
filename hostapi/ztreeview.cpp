#include "ztreeview.h"
#include "ztablecell.h"
#include "ztabledelegate.h"
#include "zgroupheaderview.h"
#include "ztreemodel.h"

#include <QHeaderView>

zTreeView::zTreeView(QWidget *parent) : QTreeView(parent)
{
    setHeader(new zGroupHeaderView(this));
    m_delegate = new zTableDelegate(this);
    setItemDelegate(m_delegate);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    header()->setStretchLastSection(false);
    header()->setDefaultAlignment(Qt::AlignCenter);
    header()->setHighlightSections(false);
    connect(m_delegate, &zTableDelegate::checkBoxClicked, this, &zTreeView::signalCheckBoxClicked);
    connect(m_delegate, &zTableDelegate::buttonClicked, this, &zTreeView::signalButtonClicked);
    connect(m_delegate, &zTableDelegate::linkClicked, this, &zTreeView::signalLinkClicked);
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex &index) {
        emit cellClicked(index.row(), index.data(zTableCell::ValueRole));
    });
}

void zTreeView::setModel(QAbstractItemModel *model)
{
    for (const QMetaObject::Connection &c : qAsConst(m_modelConnections))
        disconnect(c);
    m_modelConnections.clear();
    QTreeView::setModel(model);
    if (model)
        m_modelConnections << connect(model, &QAbstractItemModel::columnsInserted, this, &zTreeView::applyWidths)
                           << connect(model, &QAbstractItemModel::modelReset, this, &zTreeView::applyWidths);
    applyWidths();
}

zTreeModel *zTreeView::treeModel() const
{
    return qobject_cast<zTreeModel *>(model());
}

void zTreeView::applyWidths()
{
    zTableDelegate::applyColumnWidths(header());
}
