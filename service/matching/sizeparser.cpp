#include "sizeparser.h"

#include <QHash>
#include <QStringList>

#include <cstring>

namespace {

using Size = SizeParser::Size;

// Plastic pipes are named by outer diameter; DN50 is the 63 size.
const double kPairs[][2] = {{15, 20}, {20, 25}, {25, 32}, {32, 40}, {40, 50}, {50, 63}, {65, 75}, {80, 90},
                            {100, 110}, {125, 140}, {150, 160}, {200, 225}, {250, 280}, {300, 315}};

bool isLatin(QChar c)
{
    return c.unicode() < 128 && c.isLetter();
}

bool isDigitAt(const QString &t, int i)
{
    return i >= 0 && i < t.size() && t.at(i).unicode() < 128 && t.at(i).isDigit();
}

// Number starting at `i` (digits with one optional decimal point); `end` set past it.
double numberAt(const QString &t, int i, int *end)
{
    int j = i;
    while (isDigitAt(t, j) || (j > i && j < t.size() && t.at(j) == QLatin1Char('.') && isDigitAt(t, j + 1)))
        ++j;
    *end = j;
    return t.mid(i, j - i).toDouble();
}

bool isNominalSize(double v)
{
    for (const auto &p : kPairs)
        if (p[0] == v)
            return true;
    return v == 10 || v == 8 || v == 6;
}

// Latin word ending right before position `i`.
QString wordBefore(const QString &t, int i)
{
    int s = i;
    while (s > 0 && isLatin(t.at(s - 1)))
        --s;
    return t.mid(s, i - s);
}

struct Context
{
    const QString &t;
    bool wires;
    QVector<Size> out;

    void add(SizeParser::Kind k, double v)
    {
        if (v > 0)
            out.append({k, v});
    }

    bool startsAt(int i, const char *word) const
    {
        return t.midRef(i).startsWith(QLatin1String(word));
    }

    // Size named by the latin word in front of a number (DN50, De110, SC32, BV2.5).
    void prefixed(const QString &word, double v, bool product)
    {
        static const QHash<QString, double> conduits = {{QStringLiteral("sc"), 1}, {QStringLiteral("pc"), 1},
            {QStringLiteral("jdg"), 1}, {QStringLiteral("kbg"), 1}, {QStringLiteral("rc"), 1},
            {QStringLiteral("mt"), 1}, {QStringLiteral("smf"), 10}};
        static const QStringList wireTypes = {QStringLiteral("bv"), QStringLiteral("bvr"), QStringLiteral("byj"),
            QStringLiteral("byjr"), QStringLiteral("bvv"), QStringLiteral("rvs"), QStringLiteral("rvv"),
            QStringLiteral("rv"), QStringLiteral("nhbv"), QStringLiteral("zrbv"), QStringLiteral("bx")};
        if (word == QLatin1String("dn"))
            isNominalSize(v) ? add(SizeParser::Nominal, v) : add(SizeParser::Outer, v);
        else if (word == QLatin1String("de") || word == QLatin1String("d"))
            add(SizeParser::Outer, v);
        else if (conduits.contains(word))
            add(SizeParser::Nominal, v * conduits.value(word));
        else if (wires && !product && wireTypes.contains(word)) // "RVS-2*1.5": the product names the section
            add(SizeParser::Section, v);
    }

    // Size named by what follows a number (mm2, kVA, kW, A, 芯, kg, t, m2).
    int suffixed(int j, double v)
    {
        static const struct { const char *unit; SizeParser::Kind kind; double scale; } units[] = {
            {"mm2", SizeParser::Section, 1}, {"kva", SizeParser::Capacity, 1}, {"kw", SizeParser::Power, 1},
            {"kg", SizeParser::Weight, 1}, {"m2", SizeParser::Area, 1}};
        for (const auto &u : units)
            if (startsAt(j, u.unit) && !(j + int(strlen(u.unit)) < t.size() && isLatin(t.at(j + int(strlen(u.unit)))))) {
                add(u.kind, v * u.scale);
                return j + int(strlen(u.unit));
            }
        if (j < t.size() && t.at(j) == QChar(0x82af)) // 芯
            add(SizeParser::Cores, v);
        else if (j < t.size() && t.at(j) == QChar(0x8054)) // 联
            add(SizeParser::Gang, v);
        else if (j < t.size() && t.at(j) == QLatin1Char('a') && !(j + 1 < t.size() && isLatin(t.at(j + 1))))
            add(SizeParser::Current, v);
        else if (j < t.size() && t.at(j) == QLatin1Char('t') && !(j + 1 < t.size() && isLatin(t.at(j + 1))))
            add(SizeParser::Weight, v * 1000);
        return j;
    }

    // "a×b": cores × section of a cable, or the sides of a rectangle.
    int product(double a, int j)
    {
        int k = j + 1;
        if (!isDigitAt(t, k))
            return j;
        double b = numberAt(t, k, &k);
        if (wires && a <= 61 && b < 1000 && (a < 10 || b <= 10 || startsAt(k, "mm2"))) {
            add(SizeParser::Cores, a);
            add(SizeParser::Section, b);
            return startsAt(k, "mm2") ? k + 3 : k;
        }
        if (a >= 20 && b >= 20) {
            add(SizeParser::Perimeter, 2 * (a + b));
            add(SizeParser::HalfSum, a + b);
            add(SizeParser::Area, a * b / 1e6);
        }
        // A third factor (×δ or a length) is not a size of the rectangle.
        if (k < t.size() && (t.at(k) == QLatin1Char('*') || t.at(k) == QChar(0xd7) || t.at(k) == QLatin1Char('x'))
            && isDigitAt(t, k + 1)) {
            int e;
            const double c = numberAt(t, k + 1, &e);
            if (c < 20)
                add(SizeParser::Thickness, c);
            k = e;
        }
        return k;
    }
};

bool isTimes(QChar c)
{
    return c == QLatin1Char('*') || c == QChar(0xd7) || c == QLatin1Char('x');
}

int chineseCount(QChar c)
{
    switch (c.unicode()) {
    case 0x5355: return 1; // 单
    case 0x53cc: return 2; // 双
    case 0x4e8c: return 2; // 二
    case 0x4e09: return 3; // 三
    case 0x56db: return 4; // 四
    case 0x4e94: return 5; // 五
    default: return 0;
    }
}

} // namespace

double SizeParser::outerOf(double dn)
{
    for (const auto &p : kPairs)
        if (p[0] == dn)
            return p[1];
    return 0;
}

double SizeParser::nominalOf(double outer)
{
    for (const auto &p : kPairs)
        if (p[1] == outer)
            return p[0];
    return 0;
}

QVector<SizeParser::Size> SizeParser::parse(const QString &text)
{
    const QString t = text.normalized(QString::NormalizationForm_KC).toLower();
    const bool wires = (t.contains(QChar(0x7ebf)) || t.contains(QChar(0x7f06))) && !t.contains(QChar(0x9600)); // 线 缆, not 阀
    Context c{t, wires, {}};
    for (int i = 0; i < t.size(); ++i) {
        const QChar ch = t.at(i);
        if (chineseCount(ch) && i + 1 < t.size() && (t.at(i + 1) == QChar(0x82af) || t.at(i + 1) == QChar(0x8054)))
            c.add(t.at(i + 1) == QChar(0x82af) ? Cores : Gang, chineseCount(ch));
        if (ch == QChar(0x3b4) || ch == QChar(0x539a)) { // δ 厚
            int k = i + 1;
            while (k < t.size() && (t.at(k) == QLatin1Char('=') || t.at(k) == QChar(0x5ea6) || t.at(k) == QLatin1Char(' ')
                                    || t.at(k) == QLatin1Char(':')))
                ++k;
            if (isDigitAt(t, k)) {
                int e;
                c.add(Thickness, numberAt(t, k, &e));
                i = e - 1;
            }
            continue;
        }
        if (ch == QChar(0x3c6) || ch == QChar(0x444) || ch == QChar(0x2205) || ch == QChar(0x3a6)) { // φ ф ∅
            int e;
            if (isDigitAt(t, i + 1)) {
                c.add(Outer, numberAt(t, i + 1, &e));
                i = e - 1;
            }
            continue;
        }
        if (!isDigitAt(t, i) || (i > 0 && (isDigitAt(t, i - 1) || t.at(i - 1) == QLatin1Char('.'))))
            continue;
        int j;
        const double v = numberAt(t, i, &j);
        int k = i;
        while (k > 0 && (t.at(k - 1) == QLatin1Char('-') || t.at(k - 1) == QLatin1Char('=')) && k > i - 2)
            --k;
        const QString word = wordBefore(t, k);
        if (!word.isEmpty())
            c.prefixed(word, v, j < t.size() && isTimes(t.at(j)));
        if (j < t.size() && isTimes(t.at(j)))
            j = c.product(v, j);
        else
            j = c.suffixed(j, v);
        i = j - 1;
    }
    QVector<Size> unique;
    for (const Size &s : c.out)
        if (!unique.contains(s))
            unique.append(s);
    return unique;
}
