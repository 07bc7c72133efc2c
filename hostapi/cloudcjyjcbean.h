#pragma once
#include <QJsonObject>
#include <QString>

// One material price check record: a cloud price record found for a project
// material (its key in Guid), and, in the check result, the chosen cloud price
// (Ydj), its deviation text (Pcl) and whether the user ticked it.
class CloudCjyjcBean
{
public:
    int getGuid() const { return m_guid; }
    double getYdjhs() const { return m_ydjhs; }
    double getYdjbhs() const { return m_ydjbhs; }
    double getDj() const { return m_dj; }
    QString getClmc() const { return m_clmc; }
    QString getGgxh() const { return m_ggxh; }
    QString getDw() const { return m_dw; }
    QString getCd() const { return m_cd; }
    QString getCj() const { return m_cj; }
    QString getJgjzsj() const { return m_jgjzsj; }
    QString getGcdd() const { return m_gcdd; }
    QString getXmmc() const { return m_xmmc; }
    double getYdj() const { return m_ydj; }
    QString getPcl() const { return m_pcl; }
    bool getChecked() const { return m_checked; }

    void setGuid(int v) { m_guid = v; }
    void setYdjhs(double v) { m_ydjhs = v; }
    void setYdjbhs(double v) { m_ydjbhs = v; }
    void setDj(double v) { m_dj = v; }
    void setClmc(const QString &v) { m_clmc = v; }
    void setGgxh(const QString &v) { m_ggxh = v; }
    void setDw(const QString &v) { m_dw = v; }
    void setCd(const QString &v) { m_cd = v; }
    void setCj(const QString &v) { m_cj = v; }
    void setJgjzsj(const QString &v) { m_jgjzsj = v; }
    void setGcdd(const QString &v) { m_gcdd = v; }
    void setXmmc(const QString &v) { m_xmmc = v; }
    void setYdj(double v) { m_ydj = v; }
    void setPcl(const QString &v) { m_pcl = v; }
    void setChecked(bool v) { m_checked = v; }

    // Keys: "guid", "ydjhs", "ydjbhs", "dj", "clmc", "ggxh", "dw", "cd", "cj",
    // "jgjzsj", "gcdd", "xmmc" (numbers may come as text).
    static CloudCjyjcBean fromJson(const QJsonObject &record);
    QJsonObject toJson() const;

private:
    int m_guid = 0;
    double m_ydjhs = 0.0;
    double m_ydjbhs = 0.0;
    double m_dj = 0.0;
    QString m_clmc;
    QString m_ggxh;
    QString m_dw;
    QString m_cd;
    QString m_cj;
    QString m_jgjzsj;
    QString m_gcdd;
    QString m_xmmc;
    double m_ydj = 0.0;
    QString m_pcl;
    bool m_checked = false;
};
