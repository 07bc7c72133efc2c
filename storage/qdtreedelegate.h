#pragma once
#include <QPointer>
#include <QSize>
#include <QString>
#include <QStyledItemDelegate>

class QTreeView;

// Draws an expand arrow at the right edge of every row that has children and
// reports a press on it, so that the page can fetch the chapter's children.
class QDTreeDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit QDTreeDelegate(QObject *parent = nullptr);

    void setExpandIcon(const QString &path);
    void setcollapseIcon(const QString &path);
    void setIconSize(const QSize &size);
    void setView(QTreeView *view);

    // Where the arrow of a row with cell rectangle `cell` is drawn.
    QRect arrowRect(const QRect &cell) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

signals:
    void expanded(const QModelIndex &index);

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

private:
    bool hasChildren(const QAbstractItemModel *model, const QModelIndex &index) const;

    int m_iconWidth = 9;
    int m_iconHeight = 9;
    QString m_expandIcon = QStringLiteral(":/res/arrowBottom.png");
    QString m_collapseIcon = QStringLiteral(":/res/arrowTop.png");
    QPointer<QTreeView> m_view;
};
