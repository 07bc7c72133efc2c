#pragma once
#include <QString>

// The inputs of a unit-price check: time, place, altitude and with how many
// similar cloud bills each bill is compared, with the rules by which the
// wizard and the check browser show them and hand them on.
class PriceCheckInputs
{
public:
    // The time as shown.
    void setTime(const QString &time) { m_time = time; }
    QString time() const { return m_time; }
    // What the time label shows for the host's value: this month
    // ("yyyy年MM月") when it has none.
    static QString timeOrThisMonth(const QString &time);
    // The time the check runs on: the second piece of a "from-to" time.
    QString checkTime() const;

    // Takes a place as given or as a label shows it: line breaks go, "无"
    // means none.
    void setPlace(const QString &place);
    // Empty for none.
    QString place() const { return m_place; }
    // "无" for none.
    QString placeText() const;
    // placeText() with a line break after the 11th character.
    QString placeLabel() const;

    void setAltitude(const QString &altitude) { m_altitude = altitude; }
    QString altitude() const { return m_altitude; }

    // 1 (the most similar bill), 3 or 5 (the average of that many); any
    // other count is 1.
    void setMatchNum(int count);
    int matchNum() const { return m_matchNum; }
    // Position of the count among the choices "1", "3", "5".
    int matchIndex() const;

private:
    QString m_time;
    QString m_place;
    QString m_altitude = QStringLiteral("<2.0km");
    int m_matchNum = 1;
};
