#pragma once
#include <QTableWidget>

class CloudZnytzBean;

// The two-column grid of the feature guide: per line (or cloud result) a
// header row above a text row, two side by side. Local lines have a code
// cell as header; cloud results a widget of number, name and source labels.
class FeatureGrid : public QTableWidget
{
    Q_OBJECT
public:
    FeatureGrid(const QString &name, QWidget *parent);

    // Empties the grid and gives it `rows` rows of blank " " cells.
    void reset(int rows);
    void placeLine(int line, const QString &code, const QString &text);
    // Result `index` of cloud page `page` (from 1), with its work content
    // instead of its features in work-content mode.
    void placeResult(int index, int page, const CloudZnytzBean &result, bool workContent);
    // Text rows as high as their wrapped text at the current column widths.
    void fitTextRows();

signals:
    // A result's number or name label was pressed or double clicked.
    void resultClicked(int row, int column);
    void sourceClicked(int row, int column);

private:
    QWidget *resultHeader(int row, int column, int page, const CloudZnytzBean &result);
    void setTextCell(int row, int column, const QString &text);
};
