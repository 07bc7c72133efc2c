#pragma once
#include <QSet>
#include <QStyledItemDelegate>

// Edits the texts of some columns (item features, work content) in a
// multi-line editor, so that their numbered lines survive an edit. Leaving
// the editor commits, Esc cancels.
class MultiLineDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    MultiLineDelegate(const QSet<int> &columns, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

private:
    QSet<int> m_columns;
};
