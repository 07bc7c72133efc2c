#include "billlistimport.h"

#include <hostapi/basedataitem.h>
#include <hostapi/jjbtablebase.h>

#include <memory>
#include <vector>

namespace {

const int kHeaderSearchRows = 10;

// Header titles of each field, the usual first.
QStringList titlesOf(int field)
{
    switch (field) {
    case BillListImport::Code: return {QStringLiteral("项目编码"), QStringLiteral("编码")};
    case BillListImport::Name: return {QStringLiteral("项目名称"), QStringLiteral("名称")};
    case BillListImport::Features: return {QStringLiteral("项目特征"), QStringLiteral("项目特征描述")};
    case BillListImport::Unit: return {QStringLiteral("计量单位"), QStringLiteral("单位")};
    case BillListImport::Quantity: return {QStringLiteral("工程量"), QStringLiteral("数量")};
    default: return {};
    }
}

QString squeezed(QString text)
{
    return text.remove(QChar(' ')).remove(QChar(0x3000)).remove(QChar('\n')).trimmed();
}

int columnOf(const QStringList &header, int field)
{
    for (const QString &title : titlesOf(field)) {
        for (int c = 0; c < header.size(); ++c) {
            if (squeezed(header[c]) == title)
                return c;
        }
    }
    return -1;
}

bool parseQuantity(const QString &text, double *value)
{
    QString t = text.trimmed();
    t.remove(QChar(','));
    bool ok = true;
    *value = t.isEmpty() ? 0.0 : t.toDouble(&ok);
    return ok;
}

}

QString BillListImport::fieldTitle(int field)
{
    return titlesOf(field).value(0);
}

BillListImport::Mapping BillListImport::guess(const QList<QStringList> &rows)
{
    Mapping mapping;
    for (int r = 0; r < qMin(rows.size(), kHeaderSearchRows); ++r) {
        Mapping candidate;
        candidate.headerRow = r;
        int found = 0;
        for (int f = 0; f < FieldCount; ++f) {
            candidate.columns[f] = columnOf(rows[r], f);
            found += candidate.columns[f] >= 0 ? 1 : 0;
        }
        if (found >= 2)
            return candidate;
    }
    for (int f = 0; f < FieldCount; ++f)
        mapping.columns[f] = f;
    return mapping;
}

int BillListImport::fill(const QList<QStringList> &rows, const Mapping &mapping, const QString &sjkm,
                         JJBTableBase *table, QString *error)
{
    auto fail = [error](const QString &text) {
        if (error)
            *error = text;
        return -1;
    };
    if (mapping.columns[Code] < 0 && mapping.columns[Name] < 0)
        return fail(QStringLiteral("请指定“项目编码”或“项目名称”所在的列"));
    auto cell = [&mapping](const QStringList &row, int field) {
        return mapping.columns[field] < 0 ? QString() : row.value(mapping.columns[field]).trimmed();
    };
    // A row with a name alone is a section heading (分部); the bills below it
    // go into that section.
    std::vector<std::unique_ptr<BaseDataItem>> top;
    BaseDataItem *section = nullptr;
    int count = 0;
    for (int r = mapping.headerRow + 1; r < rows.size(); ++r) {
        const QStringList &row = rows[r];
        if (cell(row, Code).isEmpty() && cell(row, Name).isEmpty())
            continue;
        double quantity = 0.0;
        if (!parseQuantity(cell(row, Quantity), &quantity))
            return fail(QStringLiteral("第 %1 行的工程量“%2”不是数字").arg(r + 1).arg(cell(row, Quantity)));
        const qint64 id = static_cast<qint64>(r) + 1;
        if (cell(row, Code).isEmpty() && cell(row, Unit).isEmpty() && cell(row, Quantity).isEmpty()) {
            top.push_back(std::make_unique<BaseDataItem>(id, BaseDataItem::SectionKind));
            section = top.back().get();
            section->setData(BaseDataItem::CodeRole, QString());
            section->setData(BaseDataItem::NameRole, cell(row, Name));
            continue;
        }
        auto bill = std::make_unique<BaseDataItem>(id, BaseDataItem::BillKind);
        bill->setData(BaseDataItem::CodeRole, cell(row, Code));
        bill->setData(BaseDataItem::NameRole, cell(row, Name));
        bill->setData(BaseDataItem::FeaturesRole, cell(row, Features));
        bill->setData(BaseDataItem::UnitRole, cell(row, Unit));
        bill->setData(BaseDataItem::QuantityRole, quantity);
        bill->setData(BaseDataItem::KindRole, sjkm);
        ++count;
        if (section)
            section->appendChild(std::move(bill));
        else
            top.push_back(std::move(bill));
    }
    if (count == 0)
        return fail(QStringLiteral("表格中没有清单"));
    for (auto &item : top)
        table->rootItem()->appendChild(std::move(item));
    return count;
}
