#include "cloudzjnr.h"
#include "jsonnesting.h"
#include "recordjson.h"
#include "round.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// Which fields each line kind carries; the price of a material line is its
// adjusted price "TJ".
struct LineKind
{
    const char *type;
    bool top;
    bool hasGcl;
    bool hasDw;
    bool hasHj;
    const char *priceKey;
};

const LineKind kKinds[] = {
    {"DE", true, true, true, true, "DJ"},   {"FY", true, true, true, true, "DJ"},
    {"JS", true, false, false, false, "DJ"}, {"XP", true, false, true, true, "DJ"},
    {"CL", false, true, true, true, "TJ"},  {"DP", false, false, true, true, "DJ"},
    {"GD", false, true, true, true, "DJ"},
};

const LineKind *kindOf(const QString &type, bool top)
{
    for (const LineKind &k : kKinds) {
        if (k.top == top && type == QLatin1String(k.type))
            return &k;
    }
    return nullptr;
}

QString money(const QJsonValue &v)
{
    const QString text = Round(RecordJson::number(v), 2, true);
    return text.isEmpty() ? QStringLiteral("0.00") : text;
}

QJsonArray asArray(const QJsonValue &v)
{
    if (v.isArray())
        return v.toArray();
    if (v.isObject())
        return QJsonArray{v};
    return QJsonArray();
}

QJsonValue parsedIfText(const QJsonValue &v)
{
    if (!v.isString())
        return v;
    // Cloud text, stored there by whoever uploaded the bill.
    const QJsonDocument doc = JsonNesting::parse(v.toString().toUtf8());
    if (doc.isObject())
        return doc.object();
    if (doc.isArray())
        return doc.array();
    return QJsonValue();
}

// "ZhfMbMx" -> "MB" -> "ROWS"/"Rows" -> "FH"/"Row": the fee-template lines.
QList<cloudFymb> feeLines(const QJsonObject &line)
{
    const QJsonObject mbmx = parsedIfText(line.value(QLatin1String("ZhfMbMx"))).toObject();
    const QJsonObject mb = mbmx.value(QLatin1String("MB")).toObject();
    const QJsonObject rows = RecordJson::firstOf(mb, {"ROWS", "Rows"}).toObject();
    QList<cloudFymb> fees;
    for (const QJsonValue &row : asArray(RecordJson::firstOf(rows, {"FH", "Row"})))
        fees.append(cloudFymb::fromJson(row.toObject()));
    return fees;
}

cloudZjnr readLine(const QJsonObject &o, const LineKind &kind, int id, int parentId)
{
    cloudZjnr line;
    line.setId(id);
    line.setParentId(parentId);
    line.setType(QLatin1String(kind.type));
    line.setIsDe(kind.top);
    line.setDebh(RecordJson::text(o.value(QLatin1String("BH"))));
    line.setDemc(RecordJson::text(o.value(QLatin1String("XMMC"))));
    if (kind.hasGcl)
        line.setGcl(RecordJson::text(o.value(QLatin1String("GCL"))));
    if (kind.hasDw)
        line.setDw(RecordJson::text(o.value(QLatin1String("DW"))));
    line.setZhdj(money(o.value(QLatin1String(kind.priceKey))));
    if (kind.hasHj)
        line.setZhhj(money(o.value(QLatin1String("HJ"))));
    line.setFymblist(feeLines(o));
    return line;
}

QJsonObject writeLine(const cloudZjnr &line, const LineKind &kind)
{
    QJsonObject o{{QStringLiteral("TYPE"), line.getType()},
                  {QStringLiteral("BH"), line.getDebh()},
                  {QStringLiteral("XMMC"), line.getDemc()},
                  {QLatin1String(kind.priceKey), line.getZhdj()}};
    if (kind.hasGcl)
        o.insert(QStringLiteral("GCL"), line.getGcl());
    if (kind.hasDw)
        o.insert(QStringLiteral("DW"), line.getDw());
    if (kind.hasHj)
        o.insert(QStringLiteral("HJ"), line.getZhhj());
    if (!line.getFymblist().isEmpty()) {
        QJsonArray fees;
        for (const cloudFymb &f : line.getFymblist())
            fees.append(f.toJson());
        o.insert(QStringLiteral("ZhfMbMx"),
                 QJsonObject{{QStringLiteral("MB"),
                              QJsonObject{{QStringLiteral("ROWS"), QJsonObject{{QStringLiteral("FH"), fees}}}}}});
    }
    return o;
}

}

QList<cloudZjnr> cloudZjnr::parseList(const QJsonValue &zjnr)
{
    QJsonValue value = parsedIfText(zjnr);
    if (value.isObject())
        value = value.toObject().value(QLatin1String("zjnr"));
    QList<cloudZjnr> lines;
    int nextId = 1;
    for (const QJsonValue &element : value.toArray()) {
        const QJsonObject top = element.toObject();
        const LineKind *kind = kindOf(RecordJson::text(top.value(QLatin1String("TYPE"))).toUpper(), true);
        if (!kind)
            continue;
        const int parentId = nextId++;
        lines.append(readLine(top, *kind, parentId, -1));
        for (const QJsonValue &child : asArray(top.value(QLatin1String("ITEM")))) {
            const QJsonObject c = child.toObject();
            const LineKind *childKind = kindOf(RecordJson::text(c.value(QLatin1String("TYPE"))).toUpper(), false);
            if (childKind)
                lines.append(readLine(c, *childKind, nextId++, parentId));
        }
    }
    return lines;
}

QString cloudZjnr::toZjnrText(const QList<cloudZjnr> &lines)
{
    QJsonArray tops;
    for (const cloudZjnr &line : lines) {
        const LineKind *kind = kindOf(line.getType(), true);
        if (!kind || line.getParentId() != -1)
            continue;
        QJsonObject top = writeLine(line, *kind);
        QJsonArray items;
        for (const cloudZjnr &child : lines) {
            const LineKind *childKind = kindOf(child.getType(), false);
            if (childKind && child.getParentId() == line.getId())
                items.append(writeLine(child, *childKind));
        }
        if (!items.isEmpty())
            top.insert(QStringLiteral("ITEM"), items);
        tops.append(top);
    }
    return QString::fromUtf8(QJsonDocument(QJsonObject{{QStringLiteral("zjnr"), tops}}).toJson(QJsonDocument::Compact));
}

bool cloudZjnr::operator==(const cloudZjnr &o) const
{
    return m_id == o.m_id && m_parentId == o.m_parentId && m_type == o.m_type && m_isDe == o.m_isDe
           && m_debh == o.m_debh && m_demc == o.m_demc && m_gcl == o.m_gcl && m_dw == o.m_dw && m_zhdj == o.m_zhdj
           && m_zhhj == o.m_zhhj && m_fymblist == o.m_fymblist;
}
