#include "multilinedelegate.h"

#include <QPlainTextEdit>

MultiLineDelegate::MultiLineDelegate(const QSet<int> &columns, QObject *parent)
    : QStyledItemDelegate(parent), m_columns(columns)
{
}

QWidget *MultiLineDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                         const QModelIndex &index) const
{
    if (!m_columns.contains(index.column()))
        return QStyledItemDelegate::createEditor(parent, option, index);
    auto *editor = new QPlainTextEdit(parent);
    editor->setTabChangesFocus(true);
    return editor;
}

void MultiLineDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *text = qobject_cast<QPlainTextEdit *>(editor))
        text->setPlainText(index.data(Qt::EditRole).toString());
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

void MultiLineDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (auto *text = qobject_cast<QPlainTextEdit *>(editor))
        model->setData(index, text->toPlainText());
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}

// The editor drops below the cell, tall enough for a few lines.
void MultiLineDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                             const QModelIndex &index) const
{
    if (!qobject_cast<QPlainTextEdit *>(editor)) {
        QStyledItemDelegate::updateEditorGeometry(editor, option, index);
        return;
    }
    QRect r = option.rect;
    r.setWidth(qMax(r.width(), 320));
    r.setHeight(editor->fontMetrics().lineSpacing() * 5 + 12);
    editor->setGeometry(r);
}
