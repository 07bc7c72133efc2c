#include "curlabel.h"

curLabel::curLabel(int row, int column, QWidget *parent)
    : zBaseLabel(parent), m_row(row), m_column(column)
{
}

void curLabel::mousePressEvent(QMouseEvent *event)
{
    zBaseLabel::mousePressEvent(event);
    emit clicked(m_row, m_column);
}

void curLabel::mouseDoubleClickEvent(QMouseEvent *event)
{
    zBaseLabel::mouseDoubleClickEvent(event);
    emit dClicked(m_row, m_column);
}
