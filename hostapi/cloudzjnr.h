#pragma once
#include "cloudfymb.h"

#include <QJsonValue>
#include <QList>
#include <QString>

// One line of a matched cloud bill's price composition (组价内容): a quota,
// fee, calculated or line item at the top level (parent id -1, quota flag set)
// or a material/equipment line below one (its parent's id, quota flag cleared).
// Prices are kept as two-decimal text, as the composition tree shows them.
class cloudZjnr
{
public:
    int getId() const { return m_id; }
    int getParentId() const { return m_parentId; }
    // "DE", "FY", "JS", "XP" at the top level; "CL", "DP", "GD" below.
    QString getType() const { return m_type; }
    bool getIsDe() const { return m_isDe; }
    QString getDebh() const { return m_debh; }
    QString getDemc() const { return m_demc; }
    QString getGcl() const { return m_gcl; }
    QString getDw() const { return m_dw; }
    QString getZhdj() const { return m_zhdj; }
    QString getZhhj() const { return m_zhhj; }
    QList<cloudFymb> getFymblist() const { return m_fymblist; }

    void setId(int v) { m_id = v; }
    void setParentId(int v) { m_parentId = v; }
    void setType(const QString &v) { m_type = v; }
    void setIsDe(bool v) { m_isDe = v; }
    void setDebh(const QString &v) { m_debh = v; }
    void setDemc(const QString &v) { m_demc = v; }
    void setGcl(const QString &v) { m_gcl = v; }
    void setDw(const QString &v) { m_dw = v; }
    void setZhdj(const QString &v) { m_zhdj = v; }
    void setZhhj(const QString &v) { m_zhhj = v; }
    void setFymblist(const QList<cloudFymb> &v) { m_fymblist = v; }

    // Reads the composition form {"zjnr": [ ... ]}: given as JSON text (as the
    // cloud sends it inside a matched bill), as the object, or as its array.
    // Lines come in document order, each parent before its children, with ids
    // numbered from 1. Elements of unknown "TYPE" are skipped; text that is not
    // JSON gives an empty list.
    static QList<cloudZjnr> parseList(const QJsonValue &zjnr);
    // The inverse: the compact JSON text {"zjnr": [ ... ]} of `lines`.
    static QString toZjnrText(const QList<cloudZjnr> &lines);

    bool operator==(const cloudZjnr &other) const;
    bool operator!=(const cloudZjnr &other) const { return !(*this == other); }

private:
    int m_id = 0;
    int m_parentId = -1;
    QString m_type;
    bool m_isDe = false;
    QString m_debh;
    QString m_demc;
    QString m_gcl;
    QString m_dw;
    QString m_zhdj;
    QString m_zhhj;
    QList<cloudFymb> m_fymblist;
};
