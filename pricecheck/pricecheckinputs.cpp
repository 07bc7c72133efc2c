#include "pricecheckinputs.h"

#include <QDate>

namespace {
const int kPlaceLineLength = 11;
const QString kNone = QStringLiteral("无");
}

QString PriceCheckInputs::timeOrThisMonth(const QString &time)
{
    return time.isEmpty() ? QDate::currentDate().toString(QStringLiteral("yyyy年MM月")) : time;
}

QString PriceCheckInputs::checkTime() const
{
    return m_time.contains(QLatin1Char('-')) ? m_time.split(QLatin1Char('-')).value(1) : m_time;
}

void PriceCheckInputs::setPlace(const QString &place)
{
    m_place = QString(place).remove(QLatin1Char('\n'));
    if (m_place == kNone)
        m_place.clear();
}

QString PriceCheckInputs::placeText() const
{
    return m_place.isEmpty() ? kNone : m_place;
}

QString PriceCheckInputs::placeLabel() const
{
    QString text = placeText();
    if (text.size() > kPlaceLineLength)
        text.insert(kPlaceLineLength, QLatin1Char('\n'));
    return text;
}

void PriceCheckInputs::setMatchNum(int count)
{
    m_matchNum = count == 3 || count == 5 ? count : 1;
}

int PriceCheckInputs::matchIndex() const
{
    return m_matchNum == 1 ? 0 : m_matchNum == 3 ? 1 : 2;
}
