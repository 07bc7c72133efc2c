#include "quotabound.h"

#include <algorithm>

namespace {

bool isDigitAt(const QString &t, int i)
{
    return i >= 0 && i < t.size() && t.at(i).unicode() < 128 && t.at(i).isDigit();
}

bool isUnitChar(QChar c)
{
    return (c.unicode() < 128 && c.isLetter()) || c == QLatin1Char('2') || c == QChar(0x82af) || c == QChar(0x8054);
}

// Drops "(包含…)" notes: they name the materials, which differ within a family.
QString withoutNotes(const QString &t)
{
    QString out = t;
    const QString open = QStringLiteral("(包含");
    for (int i = out.indexOf(open); i >= 0; i = out.indexOf(open)) {
        const int close = out.indexOf(QLatin1Char(')'), i);
        out.remove(i, close < 0 ? out.size() - i : close - i + 1);
    }
    return out;
}

// "(mm2以内) 铜芯2.5": the range note may stand before a word naming the
// material. The end of the note, or -1.
int rangeNoteEnd(const QString &before)
{
    const int at = std::max(before.lastIndexOf(QStringLiteral("以内)")), before.lastIndexOf(QStringLiteral("以下)")));
    if (at < 0)
        return -1;
    for (int k = at + 3; k < before.size(); ++k)
        if (before.at(k).isDigit())
            return -1;
    return at + 3;
}

// Kind named by the words around a bound: the keyword ending nearest to it.
bool kindOf(const QString &around, SizeParser::Kind *kind)
{
    static const struct { const char *key; SizeParser::Kind kind; } keys[] = {
        {"mm2", SizeParser::Section}, {"截面", SizeParser::Section}, {"半周长", SizeParser::HalfSum},
        {"宽+高", SizeParser::HalfSum}, {"周长", SizeParser::Perimeter}, {"外径", SizeParser::Outer},
        {"灯罩直径", SizeParser::Outer}, {"公称直径", SizeParser::Nominal}, {"管径", SizeParser::Nominal},
        {"孔径", SizeParser::Outer}, {"直径", SizeParser::Nominal}, {"厚", SizeParser::Thickness},
        {"δ", SizeParser::Thickness}, {"kva", SizeParser::Capacity}, {"功率", SizeParser::Power},
        {"kw", SizeParser::Power}, {"电流", SizeParser::Current}, {"芯", SizeParser::Cores},
        {"联", SizeParser::Gang}, {"重量", SizeParser::Weight}, {"kg", SizeParser::Weight},
        {"面积", SizeParser::Area}, {"m2", SizeParser::Area}};
    int best = -1;
    for (const auto &k : keys) {
        const QString key = QString::fromUtf8(k.key);
        const int at = around.lastIndexOf(key);
        if (at >= 0 && at + key.size() > best) {
            best = at + key.size();
            *kind = k.kind;
        }
    }
    return best >= 0;
}

} // namespace

QuotaBound QuotaBound::parse(const QString &quotaName)
{
    QuotaBound b;
    const QString t = withoutNotes(quotaName.normalized(QString::NormalizationForm_KC).toLower());
    const QString within = QStringLiteral("以内"), below = QStringLiteral("以下"), above = QStringLiteral("以上");
    for (int i = 0; i < t.size(); ++i) {
        if (!isDigitAt(t, i) || isDigitAt(t, i - 1) || (i > 0 && t.at(i - 1) == QLatin1Char('.')))
            continue;
        int j = i;
        while (isDigitAt(t, j) || (j < t.size() && t.at(j) == QLatin1Char('.') && isDigitAt(t, j + 1)))
            ++j;
        // The 2 of "mm2" and the numbers of a "nominal/outer" pair state no range.
        if (j + 1 < t.size() && t.at(j) == QLatin1Char('/') && isDigitAt(t, j + 1) && b.pairNominal == 0.0) {
            int e = j + 1;
            while (isDigitAt(t, e) || (e < t.size() && t.at(e) == QLatin1Char('.') && isDigitAt(t, e + 1)))
                ++e;
            b.pairNominal = t.mid(i, j - i).toDouble();
            b.pairOuter = t.mid(j + 1, e - j - 1).toDouble();
            b.family = t.left(i) + QLatin1String("#/#") + t.mid(e);
        }
        if ((i > 0 && t.at(i - 1) == QLatin1Char('m') && j == i + 1) || (i > 0 && t.at(i - 1) == QLatin1Char('/'))
            || (j < t.size() && t.at(j) == QLatin1Char('/')))
            continue;
        const QString before = t.mid(std::max(0, i - 12), i - std::max(0, i - 12));
        const QString after = t.mid(j, 6);
        int unitEnd = 0;
        while (unitEnd < after.size() && isUnitChar(after.at(unitEnd)))
            ++unitEnd;
        const QString rest = after.mid(unitEnd).trimmed();
        const bool leads = before.endsWith(QChar(0x2264)) || before.trimmed().endsWith(QChar(0x2264))
            || before.endsWith(QLatin1String(") ")) || before.endsWith(QLatin1Char(')'));
        const int note = leads ? -1 : rangeNoteEnd(before);
        const bool upper = rest.startsWith(within) || rest.startsWith(below);
        const bool lower = rest.startsWith(above);
        if (!leads && note < 0 && !upper && !lower)
            continue;
        SizeParser::Kind kind = SizeParser::Nominal;
        if (!kindOf(note >= 0 && !upper && !lower ? before.left(note) : before + after.left(unitEnd + 1), &kind))
            continue;
        b.valid = true;
        b.kind = kind;
        b.value = t.mid(i, j - i).toDouble();
        if (after.startsWith(QLatin1Char('t')) && kind == SizeParser::Weight)
            b.value *= 1000;
        // Boxes are measured in millimetres, some quotas state metres ("(半周长) 1.5m").
        if (unitEnd == 1 && after.startsWith(QLatin1Char('m'))
            && (kind == SizeParser::HalfSum || kind == SizeParser::Perimeter))
            b.value *= 1000;
        b.atLeast = lower;
        b.family = t.left(i) + QLatin1Char('#') + t.mid(j);
        return b;
    }
    return b;
}

bool QuotaBound::fits(double size, double lower) const
{
    const double eps = 1e-9;
    if (atLeast)
        return size > value - eps;
    return size <= value + eps && size > lower + eps;
}
