#include "ztableview.h"
#include "interfaceadaptation.h"
#include "tablegrid.h"
#include "ztabledelegate.h"
#include "zgroupheaderview.h"
#include "ztablemodel.h"

#include <QHeaderView>

zTableView::zTableView(QWidget *parent) : QTableView(parent)
{
    setHorizontalHeader(new zGroupHeaderView(this));
    m_delegate = new zTableDelegate(this);
    setItemDelegate(m_delegate);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(InterfaceAdaptation::scaled(28));
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
    setWordWrap(false);
    TableGrid::install(this);
    connect(m_delegate, &zTableDelegate::checkBoxClicked, this, &zTableView::signalCheckBoxClicked);
    connect(m_delegate, &zTableDelegate::buttonClicked, this, &zTableView::signalButtonClicked);
    connect(m_delegate, &zTableDelegate::linkClicked, this, &zTableView::signalLinkClicked);
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex &index) {
        emit cellClicked(index.row(), index.data(zTableCell::ValueRole));
    });
}

void zTableView::setModel(QAbstractItemModel *model)
{
    for (const QMetaObject::Connection &c : qAsConst(m_modelConnections))
        disconnect(c);
    m_modelConnections.clear();
    QTableView::setModel(model);
    if (auto *table = qobject_cast<zTableModel *>(model)) {
        m_modelConnections << connect(table, &zTableModel::spansChanged, this, &zTableView::applySpans)
                           << connect(table, &QAbstractItemModel::modelReset, this, &zTableView::applySpans);
    }
    if (model) {
        m_modelConnections << connect(model, &QAbstractItemModel::columnsInserted, this, &zTableView::applyWidths)
                           << connect(model, &QAbstractItemModel::modelReset, this, &zTableView::applyWidths);
    }
    applySpans();
    applyWidths();
}

zTableModel *zTableView::tableModel() const
{
    return qobject_cast<zTableModel *>(model());
}

void zTableView::selectRowAt(int row)
{
    if (!model() || row < 0 || row >= model()->rowCount())
        return;
    setCurrentIndex(model()->index(row, 0));
    selectRow(row);
}

void zTableView::setHeaderHeight(int height)
{
    horizontalHeader()->setFixedHeight(InterfaceAdaptation::scaled(height));
}

void zTableView::applySpans()
{
    clearSpans();
    if (zTableModel *table = tableModel())
        for (const QRect &span : table->spans())
            setSpan(span.top(), span.left(), span.height(), span.width());
}

void zTableView::applyWidths()
{
    zTableDelegate::applyColumnWidths(horizontalHeader());
}
