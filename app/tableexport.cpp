#include "tableexport.h"

#include <csv.h>
#include <xlsxwriter.h>

#include <QAbstractItemModel>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>

#include <functional>

namespace {

void forEachRow(const QAbstractItemModel *model, const QModelIndex &parent,
                const std::function<void(const QModelIndex &)> &visit)
{
    for (int r = 0; r < model->rowCount(parent); ++r) {
        const QModelIndex first = model->index(r, 0, parent);
        visit(first);
        forEachRow(model, first, visit);
    }
}

bool numeric(const QModelIndex &index, double *value)
{
    const int align = index.data(Qt::TextAlignmentRole).toInt();
    QString text = index.data(Qt::DisplayRole).toString();
    bool ok = false;
    *value = text.remove(QChar(',')).toDouble(&ok);
    return ok && (align & Qt::AlignRight);
}

bool saveBytes(const QString &path, const QByteArray &bytes, QString *error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    if (error)
        *error = QStringLiteral("无法写入 %1：%2").arg(path, file.errorString());
    return false;
}

QByteArray quoted(const QString &field)
{
    const QByteArray src = field.toUtf8();
    QByteArray out(static_cast<int>(src.size() * 2 + 2), Qt::Uninitialized);
    const size_t n = csv_write(out.data(), static_cast<size_t>(out.size()), src.constData(),
                               static_cast<size_t>(src.size()));
    out.truncate(static_cast<int>(n));
    return out;
}

}

QList<QStringList> TableExport::rowsOf(const QAbstractItemModel *model)
{
    QList<QStringList> rows;
    QStringList header;
    for (int c = 0; c < model->columnCount(); ++c)
        header << model->headerData(c, Qt::Horizontal).toString();
    rows << header;
    forEachRow(model, QModelIndex(), [&](const QModelIndex &first) {
        QStringList row;
        for (int c = 0; c < model->columnCount(first.parent()); ++c)
            row << first.siblingAtColumn(c).data().toString();
        rows << row;
    });
    return rows;
}

// UTF-8 with a byte-order mark, so that spreadsheet programs read the
// Chinese texts right; CRLF line ends as they expect.
QByteArray TableExport::csv(const QList<QStringList> &rows)
{
    QByteArray out("\xEF\xBB\xBF");
    for (const QStringList &row : rows) {
        QByteArrayList fields;
        for (const QString &f : row)
            fields << quoted(f);
        out += fields.join(',') + "\r\n";
    }
    return out;
}

bool TableExport::write(const QAbstractItemModel *model, const QString &path, QString *error)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("xlsx"))
        return writeXlsx(model, path, error);
    if (suffix == QLatin1String("csv"))
        return saveBytes(path, csv(rowsOf(model)), error);
    if (error)
        *error = QStringLiteral("只能导出为 .xlsx 或 .csv 文件");
    return false;
}

bool TableExport::writeXlsx(const QAbstractItemModel *model, const QString &path, QString *error)
{
    QTemporaryDir dir;
    const QByteArray temp = QFile::encodeName(dir.filePath(QStringLiteral("export.xlsx")));
    lxw_workbook *book = workbook_new(temp.constData());
    lxw_worksheet *sheet = book ? workbook_add_worksheet(book, nullptr) : nullptr;
    if (!sheet) {
        if (error)
            *error = QStringLiteral("无法创建 .xlsx 工作簿");
        return false;
    }
    lxw_format *bold = workbook_add_format(book);
    format_set_bold(bold);
    for (int c = 0; c < model->columnCount(); ++c)
        worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(c),
                               model->headerData(c, Qt::Horizontal).toString().toUtf8().constData(), bold);
    lxw_row_t row = 0;
    forEachRow(model, QModelIndex(), [&](const QModelIndex &first) {
        ++row;
        for (int c = 0; c < model->columnCount(first.parent()); ++c) {
            const QModelIndex cell = first.siblingAtColumn(c);
            double value = 0.0;
            if (numeric(cell, &value))
                worksheet_write_number(sheet, row, static_cast<lxw_col_t>(c), value, nullptr);
            else
                worksheet_write_string(sheet, row, static_cast<lxw_col_t>(c),
                                       cell.data().toString().toUtf8().constData(), nullptr);
        }
    });
    const lxw_error closed = workbook_close(book);
    QFile written(QFile::decodeName(temp));
    if (closed != LXW_NO_ERROR || !written.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("无法写入 %1：%2").arg(path, QString::fromUtf8(lxw_strerror(closed)));
        return false;
    }
    return saveBytes(path, written.readAll(), error);
}
