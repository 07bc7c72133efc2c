#include "featuregrid.h"
#include "curlabel.h"
#include "featurecloudreply.h"
#include "featuregridlayout.h"

#include <hostapi/cloudznytzbean.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/tablegrid.h>

#include <QHBoxLayout>
#include <QHeaderView>

namespace {
const QColor kHeaderColor(0xF2, 0xF3, 0xF5);

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}

QTableWidgetItem *cell(const QString &text)
{
    return new QTableWidgetItem(text.isEmpty() ? QStringLiteral(" ") : text);
}
}

FeatureGrid::FeatureGrid(const QString &name, QWidget *parent)
    : QTableWidget(0, 2, parent)
{
    setObjectName(name);
    horizontalHeader()->hide();
    verticalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setWordWrap(true);
    TableGrid::install(this);
}

void FeatureGrid::reset(int rows)
{
    clearContents();
    setRowCount(rows);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < 2; ++column)
            setItem(row, column, cell(QString()));
    }
}

void FeatureGrid::placeLine(int line, const QString &code, const QString &text)
{
    const int row = FeatureGridLayout::codeRow(line);
    const int column = FeatureGridLayout::column(line);
    setItem(row, column, cell(code));
    setTextCell(row + 1, column, text);
    setRowHeight(row, px(30));
    item(row, 0)->setBackground(kHeaderColor);
    item(row, 1)->setBackground(kHeaderColor);
}

void FeatureGrid::placeResult(int index, int page, const CloudZnytzBean &result, bool workContent)
{
    const int row = FeatureGridLayout::codeRow(index);
    const int column = FeatureGridLayout::column(index);
    setCellWidget(row, column, resultHeader(row, column, page, result));
    setRowHeight(row, px(30));
    setTextCell(row + 1, column, workContent ? result.getGcnr() : result.getXmtz());
    item(row + 1, column)->setFont(QFont(QStringLiteral("宋体")));
}

QWidget *FeatureGrid::resultHeader(int row, int column, int page, const CloudZnytzBean &result)
{
    auto *header = new QWidget(this);
    header->setStyleSheet(QStringLiteral("background:#F2F3F5;"));
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(px(6), 0, px(6), 0);
    auto *number = new curLabel(row, column, header);
    number->setObjectName(QStringLiteral("lblNumber"));
    number->setText(QString::number(FeatureCloudReply::number(page, row, column)));
    auto *name = new curLabel(row, column, header);
    name->setObjectName(QStringLiteral("lblName"));
    name->setText(result.getXmmc());
    auto *source = new curLabel(row, column, header);
    source->setObjectName(QStringLiteral("lblSource"));
    source->setText(result.getBzQd() ? result.getQdkMc() : QStringLiteral("工程实例"));
    source->setStyleSheet(QStringLiteral("color:#2F7CF6;"));
    source->setCursor(Qt::PointingHandCursor);
    layout->addWidget(number);
    layout->addWidget(name, 1);
    layout->addWidget(source);
    for (curLabel *label : {number, name}) {
        connect(label, &curLabel::clicked, this, &FeatureGrid::resultClicked);
        connect(label, &curLabel::dClicked, this, &FeatureGrid::resultClicked);
    }
    connect(source, &curLabel::clicked, this, &FeatureGrid::sourceClicked);
    return header;
}

void FeatureGrid::setTextCell(int row, int column, const QString &text)
{
    QTableWidgetItem *textCell = cell(text);
    textCell->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setItem(row, column, textCell);
}

void FeatureGrid::fitTextRows()
{
    for (int row = 1; row < rowCount(); row += 2)
        resizeRowToContents(row);
}
