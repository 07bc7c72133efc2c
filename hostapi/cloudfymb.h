#pragma once
#include <QJsonObject>
#include <QList>
#include <QString>

// One fee line of a composition line's unit-price calculation program (费用模板):
// code "BH", name "MC", formula "GS", rate "FL", amount "JE" and the pricing-table
// field it feeds "ZD". All kept as the cloud gave them, as text.
class cloudFymb
{
public:
    cloudFymb() = default;
    cloudFymb(const QString &fybh, const QString &fymc, const QString &jsgs, const QString &fl, const QString &je,
              const QString &jjbzd);

    QString getFybh() const { return m_fybh; }
    QString getFymc() const { return m_fymc; }
    QString getJsgs() const { return m_jsgs; }
    QString getFl() const { return m_fl; }
    QString getJe() const { return m_je; }
    QString getJjbzd() const { return m_jjbzd; }

    void setFybh(const QString &v) { m_fybh = v; }
    void setFymc(const QString &v) { m_fymc = v; }
    void setJsgs(const QString &v) { m_jsgs = v; }
    void setFl(const QString &v) { m_fl = v; }
    void setJe(const QString &v) { m_je = v; }
    void setJjbzd(const QString &v) { m_jjbzd = v; }

    // From / to one fee-template entry {"BH","MC","GS","FL","JE","ZD"}.
    static cloudFymb fromJson(const QJsonObject &entry);
    QJsonObject toJson() const;

    bool operator==(const cloudFymb &other) const;
    bool operator!=(const cloudFymb &other) const { return !(*this == other); }

private:
    QString m_fybh;
    QString m_fymc;
    QString m_jsgs;
    QString m_fl;
    QString m_je;
    QString m_jjbzd;
};

using cloudFymbList = QList<cloudFymb>;
