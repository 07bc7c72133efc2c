#include "billtext.h"

#include <QHash>

#include <algorithm>

namespace {

constexpr uint64_t kNumberTag = uint64_t(1) << 63;

bool isHan(QChar c)
{
    const ushort u = c.unicode();
    return (u >= 0x3400 && u <= 0x9fff) || (u >= 0xf900 && u <= 0xfaff);
}

// Characters that can make up a feature label before its colon.
bool isLabelChar(QChar c)
{
    return isHan(c) || c == QChar(0x3001) || c == QLatin1Char(',') || c == QLatin1Char('(')
        || c == QLatin1Char(')') || c == QLatin1Char('/');
}

uint64_t numberKey(const QString &text, int from, int to)
{
    uint64_t h = 1469598103934665603ull;
    for (int i = from; i < to; ++i) {
        h ^= text.at(i).unicode();
        h *= 1099511628211ull;
    }
    return h | kNumberTag;
}

} // namespace

QString BillText::normalise(const QString &text)
{
    const QString folded = text.normalized(QString::NormalizationForm_KC).toLower();
    QString out;
    out.reserve(folded.size());
    bool space = false;
    for (QChar c : folded) {
        if (c.isSpace()) {
            space = !out.isEmpty();
            continue;
        }
        if (space)
            out.append(QLatin1Char(' '));
        space = false;
        out.append(c);
    }
    return out;
}

QString BillText::stripLabels(const QString &normalised)
{
    QString out = normalised;
    for (int i = out.size() - 1; i >= 0; --i) {
        if (out.at(i) != QLatin1Char(':'))
            continue;
        int start = i;
        while (start > 0 && isLabelChar(out.at(start - 1)))
            --start;
        if (start < i && isHan(out.at(start)))
            out.replace(start, i - start + 1, QLatin1Char(' '));
        i = start;
    }
    return out;
}

std::vector<uint64_t> BillText::terms(const QString &prepared)
{
    std::vector<uint64_t> out;
    const int n = prepared.size();
    out.reserve(n + 4);
    for (int i = 0; i + 1 < n; ++i) {
        const QChar a = prepared.at(i), b = prepared.at(i + 1);
        if (a == QLatin1Char(' ') || b == QLatin1Char(' '))
            continue;
        out.push_back((uint64_t(a.unicode()) << 16) | b.unicode());
    }
    if (n == 1 && prepared.at(0) != QLatin1Char(' '))
        out.push_back(uint64_t(prepared.at(0).unicode()) << 16);
    for (int i = 0; i < n;) {
        if (!prepared.at(i).isDigit()) {
            ++i;
            continue;
        }
        int j = i;
        while (j < n && (prepared.at(j).isDigit()
                         || (prepared.at(j) == QLatin1Char('.') && j + 1 < n && prepared.at(j + 1).isDigit())))
            ++j;
        out.push_back(numberKey(prepared, i, j));
        i = j;
    }
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

std::vector<uint64_t> BillText::termsOf(const QString &raw)
{
    return terms(stripLabels(normalise(raw)));
}

QString BillText::unitKey(const QString &unit)
{
    static const QHash<QString, QString> same = {
        {QStringLiteral("米"), QStringLiteral("m")},
        {QStringLiteral("平方米"), QStringLiteral("m2")},
        {QStringLiteral("m²"), QStringLiteral("m2")},
        {QStringLiteral("立方米"), QStringLiteral("m3")},
        {QStringLiteral("m³"), QStringLiteral("m3")},
        {QStringLiteral("吨"), QStringLiteral("t")},
        {QStringLiteral("千克"), QStringLiteral("kg")},
        {QStringLiteral("公斤"), QStringLiteral("kg")},
    };
    QString key = normalise(unit);
    key.remove(QLatin1Char(' '));
    return same.value(key, key);
}

uint32_t BillText::codeKey(const QString &code)
{
    const QString t = code.trimmed();
    if (t.size() < 9)
        return 0;
    uint32_t v = 0;
    for (int i = 0; i < 9; ++i) {
        if (!t.at(i).isDigit())
            return 0;
        v = v * 10 + uint32_t(t.at(i).digitValue());
    }
    return v == 0 ? 0 : v;
}
