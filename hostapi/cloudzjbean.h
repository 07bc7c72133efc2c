#pragma once
#include "cloudzjnr.h"

#include <QJsonObject>
#include <QList>
#include <QString>

// One matched cloud bill with its price composition.
//
// String form (what the unit-price check hands over one string per bill, and
// what the service returns): the compact JSON text of one matched bill, with
// the keys of the pricing match reply:
//   {"id": int, "qdly": source, "qdbh": code, "xmmc": name, "jldw": unit,
//    "zhdj": number, "jzsj": base time, "dd": place, "xmtz": features,
//    "gznr": work content, "zjnr": "{\"zjnr\":[...]}"}
// Numbers may also come as text; "zjnr" may be the JSON text, the object or
// its array. toString() writes exactly this form, so host and service agree.
class CloudZjBean
{
public:
    CloudZjBean() = default;
    // Parses the string form; a text that is not a JSON object leaves an
    // empty bean (isValid() false).
    explicit CloudZjBean(const QString &text);

    static CloudZjBean fromJson(const QJsonObject &bill);
    QJsonObject toJson() const;
    QString toString() const;
    bool isValid() const { return m_valid; }

    int getId() const { return m_id; }
    int getLy() const { return m_ly; }
    QString getXmbh() const { return m_xmbh; }
    QString getXmmc() const { return m_xmmc; }
    QString getDw() const { return m_dw; }
    double getZhdj() const { return m_zhdj; }
    QString getJzsj() const { return m_jzsj; }
    QString getDd() const { return m_dd; }
    QString getXmtz() const { return m_xmtz; }
    QString GetGcnr() const { return m_gcnr; }
    QList<cloudZjnr> getZjnrlist() const { return m_zjnrlist; }

    void setId(int v) { m_id = v; m_valid = true; }
    void setLy(int v) { m_ly = v; }
    void setXmbh(const QString &v) { m_xmbh = v; }
    void setXmmc(const QString &v) { m_xmmc = v; }
    void setDw(const QString &v) { m_dw = v; }
    void setZhdj(double v) { m_zhdj = v; }
    void setJzsj(const QString &v) { m_jzsj = v; }
    void setDd(const QString &v) { m_dd = v; }
    void setXmtz(const QString &v) { m_xmtz = v; }
    void setGcnr(const QString &v) { m_gcnr = v; }
    void setZjnrlist(const QList<cloudZjnr> &v) { m_zjnrlist = v; }

    bool operator==(const CloudZjBean &other) const;
    bool operator!=(const CloudZjBean &other) const { return !(*this == other); }

private:
    bool m_valid = false;
    int m_id = 0;
    int m_ly = 0;
    QString m_xmbh;
    QString m_xmmc;
    QString m_dw;
    double m_zhdj = 0.0;
    QString m_jzsj;
    QString m_dd;
    QString m_xmtz;
    QString m_gcnr;
    QList<cloudZjnr> m_zjnrlist;
};
