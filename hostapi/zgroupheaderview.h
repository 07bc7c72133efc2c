#pragma once
#include <QHeaderView>

// Horizontal header of the host table and tree views that draws two-level
// titles: a declared title "综合|单价" shows "单价" in the lower half of its
// section and "综合" once across the upper half of every adjacent section
// whose title starts with the same group. Other titles fill the section.
class zGroupHeaderView : public QHeaderView
{
    Q_OBJECT
public:
    explicit zGroupHeaderView(QWidget *parent = nullptr);

    // The group part of a section's declared title ("" for a one-level title).
    QString groupOf(int logicalIndex) const;
    // First and last visual index of the run of sections sharing the group of
    // `logicalIndex`.
    QPair<int, int> groupRun(int logicalIndex) const;

protected:
    void paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const override;

private:
    QString titleOf(int logicalIndex) const;
    void paintPart(QPainter *painter, const QRect &rect, const QString &text, int logicalIndex) const;
};
