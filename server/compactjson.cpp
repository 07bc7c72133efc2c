#include "compactjson.h"

#include <QLocale>

#include <cmath>

namespace {

char hexDigit(unsigned u)
{
    return char(u < 10 ? '0' + u : 'a' + u - 10);
}

char *writeEscape(unsigned u, char *p)
{
    *p++ = '\\';
    *p++ = 'u';
    *p++ = hexDigit(u >> 12 & 0xf);
    *p++ = hexDigit(u >> 8 & 0xf);
    *p++ = hexDigit(u >> 4 & 0xf);
    *p++ = hexDigit(u & 0xf);
    return p;
}

char *writeAscii(unsigned u, char *p)
{
    if (u >= 0x20 && u != '"' && u != '\\') {
        *p++ = char(u);
        return p;
    }
    char letter = 0;
    switch (u) {
    case '"': letter = '"'; break;
    case '\\': letter = '\\'; break;
    case '\b': letter = 'b'; break;
    case '\f': letter = 'f'; break;
    case '\n': letter = 'n'; break;
    case '\r': letter = 'r'; break;
    case '\t': letter = 't'; break;
    default: return writeEscape(u, p);
    }
    *p++ = '\\';
    *p++ = letter;
    return p;
}

} // namespace

void CompactJson::appendString(const QString &text, std::string &out)
{
    // Room for a byte a unit first, more as the text needs it: sized for
    // the worst case (six bytes a unit) at once, long texts would pay for
    // zero-filling five times their size.
    size_t used = out.size();
    out.resize(used + size_t(text.size()) + 8);
    char *p = &out[used];
    char *end = &out[0] + out.size();
    *p++ = '"';
    const ushort *src = text.utf16();
    const ushort *const last = src + text.size();
    while (src != last) {
        if (end - p < 7) {
            used = size_t(p - out.data());
            out.resize(out.size() + 3 * size_t(last - src) + 8);
            p = &out[used];
            end = &out[0] + out.size();
        }
        const unsigned u = *src++;
        if (u < 0x80) {
            p = writeAscii(u, p);
        } else if (u < 0x800) {
            *p++ = char(0xc0 | u >> 6);
            *p++ = char(0x80 | (u & 0x3f));
        } else if (!QChar::isSurrogate(u)) {
            *p++ = char(0xe0 | u >> 12);
            *p++ = char(0x80 | (u >> 6 & 0x3f));
            *p++ = char(0x80 | (u & 0x3f));
        } else if (QChar::isHighSurrogate(u) && src != last && QChar::isLowSurrogate(*src)) {
            const unsigned c = QChar::surrogateToUcs4(ushort(u), *src++);
            *p++ = char(0xf0 | c >> 18);
            *p++ = char(0x80 | (c >> 12 & 0x3f));
            *p++ = char(0x80 | (c >> 6 & 0x3f));
            *p++ = char(0x80 | (c & 0x3f));
        } else {
            // A lone surrogate has no UTF-8 form: Qt escapes it.
            p = writeEscape(u, p);
        }
    }
    *p++ = '"';
    out.resize(size_t(p - out.data()));
}

void CompactJson::appendNumber(double number, std::string &out)
{
    if (!std::isfinite(number)) {
        out.append("null");
        return;
    }
    // Whole numbers are written without exponent up to 2^64, as Qt does;
    // below 2^53 that is their exact integer.
    const double magnitude = std::fabs(number);
    if (magnitude < 9007199254740992.0 && number == std::floor(number)) {
        out.append(std::to_string(qint64(number)));
        return;
    }
    const bool whole = magnitude < 18446744073709551616.0 && number == std::floor(number);
    out.append(QByteArray::number(number, whole ? 'f' : 'g', QLocale::FloatingPointShortest).constData());
}

void CompactJson::append(const QJsonValue &value, std::string &out)
{
    appendValue(value, out, 0);
}

void CompactJson::append(const QJsonArray &array, std::string &out)
{
    appendArray(array, out, 0);
}

void CompactJson::append(const QJsonObject &object, std::string &out)
{
    appendObject(object, out, 0);
}

// Below OwnDepth levels Qt's writer takes over: its frames are smaller than
// these (much smaller under the address sanitizer), and a server worker's
// stack is sized for its recursion over the deepest message allowed.
void CompactJson::appendValue(const QJsonValue &value, std::string &out, int depth)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        out.append(value.toBool() ? "true" : "false");
        break;
    case QJsonValue::Double:
        appendNumber(value.toDouble(), out);
        break;
    case QJsonValue::String:
        appendString(value.toString(), out);
        break;
    case QJsonValue::Array:
        if (depth >= OwnDepth)
            appendByQt(QJsonDocument(value.toArray()), out);
        else
            appendArray(value.toArray(), out, depth + 1);
        break;
    case QJsonValue::Object:
        if (depth >= OwnDepth)
            appendByQt(QJsonDocument(value.toObject()), out);
        else
            appendObject(value.toObject(), out, depth + 1);
        break;
    default:
        out.append("null");
    }
}

void CompactJson::appendByQt(const QJsonDocument &document, std::string &out)
{
    const QByteArray text = document.toJson(QJsonDocument::Compact);
    out.append(text.constData(), size_t(text.size()));
}

void CompactJson::appendArray(const QJsonArray &array, std::string &out, int depth)
{
    out.push_back('[');
    bool first = true;
    for (const QJsonValue &value : array) {
        if (!first)
            out.push_back(',');
        first = false;
        appendValue(value, out, depth);
    }
    out.push_back(']');
}

void CompactJson::appendObject(const QJsonObject &object, std::string &out, int depth)
{
    out.push_back('{');
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        if (it != object.constBegin())
            out.push_back(',');
        appendString(it.key(), out);
        out.push_back(':');
        appendValue(it.value(), out, depth);
    }
    out.push_back('}');
}
