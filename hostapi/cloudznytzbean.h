#pragma once
#include <QJsonObject>
#include <QString>

// One cloud feature result of the feature guide: a matched bill's name,
// item features and work content, from a standard bill library (BzQd true,
// with the library's name) or from an accumulated project (BzQd false).
class CloudZnytzBean
{
public:
    QString getXmmc() const { return m_xmmc; }
    QString getXmtz() const { return m_xmtz; }
    QString getGcnr() const { return m_gcnr; }
    // The result's id as decimal text.
    QString getXmid() const { return m_xmid; }
    bool getBzQd() const { return m_bzQd; }
    QString getQdkMc() const { return m_qdkMc; }

    void setXmmc(const QString &v) { m_xmmc = v; }
    void setXmtz(const QString &v) { m_xmtz = v; }
    void setGcnr(const QString &v) { m_gcnr = v; }
    void setXmid(const QString &v) { m_xmid = v; }
    void setBzQd(bool v) { m_bzQd = v; }
    void setQdkMc(const QString &v) { m_qdkMc = v; }

    // One element of the match reply's "bzqds" (standard = true: library name
    // from "bzqdkmc") or "jlqds" (no library name): "xmmc", "xmtz", "gznr",
    // and "guida" kept as decimal text.
    static CloudZnytzBean fromJson(const QJsonObject &element, bool standard);

    bool operator==(const CloudZnytzBean &other) const;

private:
    QString m_xmmc;
    QString m_xmtz;
    QString m_gcnr;
    QString m_xmid;
    bool m_bzQd = false;
    QString m_qdkMc;
};
