#include "spreadsheetreader.h"

#include <csv.h>
#include <unzip.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <map>
#include <memory>

namespace {

struct CsvRows
{
    QTextCodec *codec;
    QList<QStringList> rows;
    QStringList row;
};

void csvField(void *field, size_t length, void *data)
{
    auto *out = static_cast<CsvRows *>(data);
    out->row.append(out->codec->toUnicode(static_cast<const char *>(field), static_cast<int>(length)));
}

void csvRowEnd(int, void *data)
{
    auto *out = static_cast<CsvRows *>(data);
    out->rows.append(out->row);
    out->row.clear();
}

// Spreadsheets saved by Chinese office programs are often GB18030 rather
// than UTF-8.
QTextCodec *csvCodec(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec *utf8 = QTextCodec::codecForName("UTF-8");
    utf8->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars > 0 ? QTextCodec::codecForName("GB18030") : utf8;
}

using Package = std::unique_ptr<void, int (*)(unzFile)>;

bool readEntry(unzFile zip, const QString &name, QByteArray *bytes)
{
    if (unzLocateFile(zip, name.toUtf8().constData(), 0) != UNZ_OK || unzOpenCurrentFile(zip) != UNZ_OK)
        return false;
    bytes->clear();
    char buffer[16384];
    int n = 0;
    while ((n = unzReadCurrentFile(zip, buffer, sizeof buffer)) > 0)
        bytes->append(buffer, n);
    return unzCloseCurrentFile(zip) == UNZ_OK && n == 0;
}

QStringList entryNames(unzFile zip)
{
    QStringList names;
    for (int r = unzGoToFirstFile(zip); r == UNZ_OK; r = unzGoToNextFile(zip)) {
        char name[512];
        unz_file_info64 info{};
        if (unzGetCurrentFileInfo64(zip, &info, name, sizeof name, nullptr, 0, nullptr, 0) == UNZ_OK)
            names << QString::fromUtf8(name);
    }
    return names;
}

// Text of every <t> inside the current element, phonetic runs left out.
QString elementText(QXmlStreamReader &xml)
{
    QString text;
    const QString end = xml.name().toString();
    int phonetic = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("rPh"))
            ++phonetic;
        else if (xml.isEndElement() && xml.name() == QLatin1String("rPh"))
            --phonetic;
        else if (xml.isStartElement() && xml.name() == QLatin1String("t") && phonetic == 0)
            text += xml.readElementText(QXmlStreamReader::IncludeChildElements);
        else if (xml.isEndElement() && xml.name() == end)
            break;
    }
    return text;
}

QStringList sharedStrings(const QByteArray &bytes)
{
    QStringList strings;
    QXmlStreamReader xml(bytes);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("si"))
            strings.append(elementText(xml));
    }
    return strings;
}

int columnOf(const QString &reference)
{
    int column = 0;
    for (const QChar c : reference) {
        if (!c.isLetter())
            break;
        column = column * 26 + (c.toUpper().unicode() - 'A' + 1);
    }
    return column - 1;
}

QString numberText(const QString &value)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok ? QString::number(number, 'g', 15) : value;
}

QString cellValue(QXmlStreamReader &xml, const QString &type, const QStringList &shared)
{
    QString value;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("v"))
            value = xml.readElementText();
        else if (xml.isStartElement() && xml.name() == QLatin1String("is"))
            value = elementText(xml);
        else if (xml.isEndElement() && xml.name() == QLatin1String("c"))
            break;
    }
    if (type == QLatin1String("s"))
        return shared.value(value.toInt());
    if (type.isEmpty() || type == QLatin1String("n"))
        return numberText(value);
    return value;
}

QList<QStringList> sheetRows(const QByteArray &bytes, const QStringList &shared, QString *error)
{
    std::map<int, QStringList> rows;
    QXmlStreamReader xml(bytes);
    int rowNumber = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        const auto attributes = xml.attributes();
        if (xml.name() == QLatin1String("row")) {
            rowNumber = attributes.hasAttribute(QLatin1String("r"))
                            ? attributes.value(QLatin1String("r")).toInt()
                            : rowNumber + 1;
        } else if (xml.name() == QLatin1String("c")) {
            QStringList &row = rows[rowNumber];
            const QString reference = attributes.value(QLatin1String("r")).toString();
            const int column = reference.isEmpty() ? row.size() : columnOf(reference);
            const QString text = cellValue(xml, attributes.value(QLatin1String("t")).toString(), shared);
            while (row.size() <= column)
                row.append(QString());
            row[column] = text;
        }
    }
    if (xml.hasError() && error)
        *error = QStringLiteral("表格内容已损坏：%1").arg(xml.errorString());
    QList<QStringList> out;
    int last = 0;
    for (const auto &r : rows) {
        for (++last; last < r.first; ++last)
            out.append(QStringList());
        out.append(r.second);
    }
    return xml.hasError() ? QList<QStringList>() : out;
}

// The first worksheet in file order (sheet1.xml before sheet2.xml ...).
QString firstSheet(unzFile zip)
{
    static const QRegularExpression pattern(QStringLiteral("^xl/worksheets/sheet(\\d+)\\.xml$"));
    QString best;
    int bestNumber = 0;
    for (const QString &name : entryNames(zip)) {
        const QRegularExpressionMatch m = pattern.match(name);
        if (m.hasMatch() && (best.isEmpty() || m.captured(1).toInt() < bestNumber)) {
            best = name;
            bestNumber = m.captured(1).toInt();
        }
    }
    return best;
}

}

bool SpreadsheetReader::read(const QString &path, QList<QStringList> *rows, QString *error)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("xlsx"))
        return readXlsx(path, rows, error);
    if (suffix != QLatin1String("csv")) {
        if (error)
            *error = QStringLiteral("只能导入 .xlsx 或 .csv 文件");
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("无法打开 %1：%2").arg(path, file.errorString());
        return false;
    }
    return readCsv(file.readAll(), rows, error);
}

bool SpreadsheetReader::readCsv(const QByteArray &bytes, QList<QStringList> *rows, QString *error)
{
    QByteArray text = bytes;
    if (text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    csv_parser parser{};
    csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI);
    CsvRows out{csvCodec(text), {}, {}};
    const bool parsed = csv_parse(&parser, text.constData(), static_cast<size_t>(text.size()), csvField, csvRowEnd,
                                  &out) == static_cast<size_t>(text.size())
                        && csv_fini(&parser, csvField, csvRowEnd, &out) == 0;
    if (!parsed && error)
        *error = QStringLiteral("CSV 文件格式错误：%1").arg(QString::fromLatin1(csv_strerror(csv_error(&parser))));
    csv_free(&parser);
    if (parsed)
        *rows = out.rows;
    return parsed;
}

bool SpreadsheetReader::readXlsx(const QString &path, QList<QStringList> *rows, QString *error)
{
    const Package zip(unzOpen64(QFile::encodeName(path).constData()), unzClose);
    QByteArray sheet;
    QByteArray shared;
    const QString sheetName = zip ? firstSheet(zip.get()) : QString();
    if (sheetName.isEmpty() || !readEntry(zip.get(), sheetName, &sheet)) {
        if (error)
            *error = QStringLiteral("%1 不是有效的 .xlsx 工作簿").arg(QFileInfo(path).fileName());
        return false;
    }
    readEntry(zip.get(), QStringLiteral("xl/sharedStrings.xml"), &shared);
    QString problem;
    const QList<QStringList> read = sheetRows(sheet, sharedStrings(shared), &problem);
    if (!problem.isEmpty()) {
        if (error)
            *error = problem;
        return false;
    }
    *rows = read;
    return true;
}
