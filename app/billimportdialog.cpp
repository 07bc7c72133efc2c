#include "billimportdialog.h"

#include <hostapi/buttonrow.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/tablegrid.h>
#include <hostapi/widgetfactory.h>

#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
const int kPreviewRows = 12;
}

BillImportDialog::BillImportDialog(const QString &fileName, const QList<QStringList> &rows, QWidget *parent)
    : zTitleModal(parent), m_rows(rows)
{
    for (const QStringList &row : rows)
        m_columnCount = qMax(m_columnCount, static_cast<int>(row.size()));
    setScaledFixedSize(760, 520);
    OnlyClose();
    SetCaption(QStringLiteral("导入清单"));
    auto *body = new QVBoxLayout;
    const int margin = InterfaceAdaptation::scaled(16);
    body->setContentsMargins(margin, margin / 2, margin, margin);
    body->setSpacing(InterfaceAdaptation::scaled(10));
    body->addWidget(WidgetFactory::label(QStringLiteral("请确认“%1”中各列对应的清单内容：").arg(fileName),
                                         QStringLiteral("lblHint"), clientWidget()));
    auto *fields = new QWidget(clientWidget());
    buildFields(fields);
    body->addWidget(fields);
    m_preview = new QTableWidget(clientWidget());
    m_preview->setObjectName(QStringLiteral("tablePreview"));
    TableGrid::install(m_preview);
    m_preview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_preview->verticalHeader()->setDefaultSectionSize(InterfaceAdaptation::scaled(22));
    m_preview->horizontalHeader()->setStretchLastSection(true);
    body->addWidget(m_preview, 1);
    auto *buttons = new ButtonRow(clientWidget());
    buttons->setButtonSize(70, 28);
    buttons->addOkCancel(this, 10);
    body->addLayout(buttons);
    clientLayout()->addLayout(body, 1);
    connect(m_header, QOverload<int>::of(&QSpinBox::valueChanged), this, &BillImportDialog::fillPreview);
    fillPreview();
}

QString BillImportDialog::columnName(int column)
{
    QString name;
    for (int c = column + 1; c > 0; c = (c - 1) / 26)
        name.prepend(QChar('A' + (c - 1) % 26));
    return name;
}

void BillImportDialog::buildFields(QWidget *box)
{
    const BillListImport::Mapping guessed = BillListImport::guess(m_rows);
    const QStringList header = m_rows.value(guessed.headerRow);
    auto *grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(InterfaceAdaptation::scaled(12));
    for (int f = 0; f < BillListImport::FieldCount; ++f) {
        grid->addWidget(new QLabel(BillListImport::fieldTitle(f) + QStringLiteral("："), box), f / 3, (f % 3) * 2);
        auto *combo = new QComboBox(box);
        combo->setObjectName(QStringLiteral("comField%1").arg(f));
        combo->addItem(QStringLiteral("（不导入）"), -1);
        for (int c = 0; c < m_columnCount; ++c) {
            const QString title = header.value(c).simplified();
            combo->addItem(title.isEmpty() ? QStringLiteral("%1列").arg(columnName(c))
                                           : QStringLiteral("%1列：%2").arg(columnName(c), title),
                           c);
        }
        combo->setCurrentIndex(combo->findData(guessed.columns[f]));
        grid->addWidget(combo, f / 3, (f % 3) * 2 + 1);
        m_combos.append(combo);
    }
    grid->addWidget(new QLabel(QStringLiteral("标题行："), box), 1, 4);
    m_header = new QSpinBox(box);
    m_header->setObjectName(QStringLiteral("spinHeader"));
    m_header->setRange(0, qMax(0, static_cast<int>(m_rows.size())));
    m_header->setSpecialValueText(QStringLiteral("无"));
    m_header->setValue(guessed.headerRow + 1);
    grid->addWidget(m_header, 1, 5);
    for (int c : {1, 3, 5})
        grid->setColumnStretch(c, 1);
}

void BillImportDialog::fillPreview()
{
    const int first = m_header->value();
    const int shown = qMax(0, qMin(kPreviewRows, static_cast<int>(m_rows.size()) - first));
    m_preview->clear();
    m_preview->setColumnCount(m_columnCount);
    m_preview->setRowCount(shown);
    const QStringList header = m_rows.value(first - 1);
    QStringList titles;
    for (int c = 0; c < m_columnCount; ++c)
        titles << QStringLiteral("%1 %2").arg(columnName(c), header.value(c).simplified()).trimmed();
    m_preview->setHorizontalHeaderLabels(titles);
    QStringList rowNumbers;
    for (int r = 0; r < shown; ++r) {
        rowNumbers << QString::number(first + r + 1);
        const QStringList &row = m_rows[first + r];
        for (int c = 0; c < row.size(); ++c)
            m_preview->setItem(r, c, new QTableWidgetItem(row[c].simplified()));
    }
    m_preview->setVerticalHeaderLabels(rowNumbers);
    m_preview->resizeColumnsToContents();
    for (int c = 0; c < m_columnCount; ++c)
        m_preview->setColumnWidth(c, qMin(m_preview->columnWidth(c), InterfaceAdaptation::scaled(220)));
}

BillListImport::Mapping BillImportDialog::mapping() const
{
    BillListImport::Mapping m;
    m.headerRow = m_header->value() - 1;
    for (int f = 0; f < BillListImport::FieldCount; ++f)
        m.columns[f] = m_combos[f]->currentData().toInt();
    return m;
}
