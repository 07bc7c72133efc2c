#include "round.h"

#include <QtMath>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {
// Digits of |value| with 15 significant figures (the precision a double holds
// reliably), as an integer digit string and the position of the decimal point.
bool decimalDigits(double value, QString &digits, int &pointPos)
{
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(value));
    const QString text = QString::fromLatin1(buf);
    const int e = text.indexOf(QLatin1Char('e'));
    if (e < 0)
        return false;
    digits = text.left(e);
    digits.remove(QLatin1Char('.'));
    pointPos = text.mid(e + 1).toInt() + 1;
    return true;
}
}

QString Round(double value, int decimals, bool keepZeros)
{
    if (!std::isfinite(value))
        return keepZeros ? QStringLiteral("0") : QString();
    decimals = qBound(0, decimals, 15);
    QString digits;
    int pointPos = 0;
    if (!decimalDigits(value, digits, pointPos))
        return QString();
    const bool negative = value < 0;

    // Align so that digits[0 .. pointPos) is the integer part.
    if (pointPos <= 0) {
        digits.prepend(QString(-pointPos, QLatin1Char('0')));
        pointPos = 0;
    }
    const int keep = pointPos + decimals;
    if (digits.size() < keep + 1)
        digits.append(QString(keep + 1 - digits.size(), QLatin1Char('0')));
    QString kept = digits.left(keep);
    if (digits.at(keep) >= QLatin1Char('5')) {
        int i = kept.size() - 1;
        for (; i >= 0; --i) {
            if (kept[i] == QLatin1Char('9')) {
                kept[i] = QLatin1Char('0');
            } else {
                kept[i] = QChar(kept[i].unicode() + 1);
                break;
            }
        }
        if (i < 0) {
            kept.prepend(QLatin1Char('1'));
            ++pointPos;
        }
    }
    QString intPart = kept.left(pointPos);
    QString fracPart = kept.mid(pointPos);
    while (intPart.size() > 1 && intPart.startsWith(QLatin1Char('0')))
        intPart.remove(0, 1);
    if (intPart.isEmpty())
        intPart = QStringLiteral("0");

    const bool isZero = intPart == QLatin1String("0") && std::all_of(fracPart.cbegin(), fracPart.cend(), [](QChar c) { return c == QLatin1Char('0'); });
    if (!keepZeros) {
        while (fracPart.endsWith(QLatin1Char('0')))
            fracPart.chop(1);
        if (isZero)
            return QString();
    }
    QString result = intPart;
    if (!fracPart.isEmpty())
        result += QLatin1Char('.') + fracPart;
    if (negative && !isZero)
        result.prepend(QLatin1Char('-'));
    return result;
}
