#pragma once
#include <hostapi/zbaselabel.h>

// A label of the cloud result grid that reports presses and double clicks
// with the grid cell it stands in.
class curLabel : public zBaseLabel
{
    Q_OBJECT
public:
    curLabel(int row, int column, QWidget *parent = nullptr);

    int row() const { return m_row; }
    int column() const { return m_column; }

signals:
    void clicked(int row, int column);
    void dClicked(int row, int column);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    int m_row;
    int m_column;
};
