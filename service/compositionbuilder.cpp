#include "compositionbuilder.h"

#include <QJsonDocument>

#include <cmath>

namespace {

struct MaterialPick {
    const char *bh;
    const char *name;
    const char *unit;
    double price;
};

const MaterialPick kPicks[] = {
    {"04010001", "普通硅酸盐水泥 P.O 42.5", "t", 424.78},  {"04030001", "中砂", "m3", 140.78},
    {"80210001", "预拌混凝土 C30", "m3", 504.85},          {"01010101", "热轧带肋钢筋 HRB400", "t", 3628.32},
    {"17030001", "镀锌钢管 DN25", "m", 16.46},             {"28030001", "铜芯绝缘电线 BV-2.5mm2", "m", 2.08},
    {"29060001", "刚性阻燃管 PC20", "m", 1.86},            {"13010001", "乳胶漆", "kg", 14.16},
    {"08010001", "纸面石膏板 9.5mm", "m2", 11.50},         {"03010001", "膨胀螺栓 M8", "套", 0.62},
};

double ratio(quint32 hash, int salt, double low, double high)
{
    const quint32 h = (hash ^ (quint32(salt) * 2654435761u)) % 10007u;
    return low + (high - low) * double(h) / 10006.0;
}

QString unitOfQuota(const QString &name, const QString &billUnit)
{
    if (name.contains(QStringLiteral("管")) || name.contains(QStringLiteral("线")) || name.contains(QStringLiteral("缆")))
        return QStringLiteral("10m");
    if (name.contains(QStringLiteral("面")) || name.contains(QStringLiteral("板")) || name.contains(QStringLiteral("涂")))
        return QStringLiteral("10m2");
    if (name.contains(QStringLiteral("混凝土")) || name.contains(QStringLiteral("土方")))
        return QStringLiteral("10m3");
    return billUnit.isEmpty() ? QStringLiteral("个") : billUnit;
}

}

quint32 CompositionBuilder::stableHash(const QString &text)
{
    quint32 h = 2166136261u;
    for (const char c : text.toUtf8()) {
        h ^= quint8(c);
        h *= 16777619u;
    }
    return h;
}

double CompositionBuilder::round2(double value)
{
    return std::round(value * 100.0) / 100.0;
}

CompositionBuilder::Result CompositionBuilder::build(const QStringList &quotaIds, const QStringList &quotaNames,
                                                     const QString &billUnit)
{
    QJsonArray lines;
    double total = 0.0;
    for (int i = 0; i < quotaIds.size(); ++i) {
        const QJsonObject line = quotaLine(quotaIds.at(i), quotaNames.value(i), billUnit);
        total += line.value(QStringLiteral("HJ")).toDouble();
        lines.append(line);
    }
    Result result;
    result.zhdj = round2(total);
    result.zjnr = QString::fromUtf8(
        QJsonDocument(QJsonObject{{QStringLiteral("zjnr"), lines}}).toJson(QJsonDocument::Compact));
    return result;
}

QJsonObject CompositionBuilder::quotaLine(const QString &id, const QString &name, const QString &billUnit)
{
    const quint32 h = stableHash(id + QLatin1Char('|') + name);
    const double quantity = round2(ratio(h, 1, 0.05, 1.2) * 100.0) / 100.0;
    const double labour = round2(ratio(h, 2, 20.0, 600.0));
    const double material = round2(ratio(h, 3, 10.0, 900.0));
    const double machine = round2(ratio(h, 4, 0.0, 120.0));
    const double overhead = round2((labour + machine) * 0.25);
    const double profit = round2((labour + machine) * 0.12);
    const double price = round2(labour + material + machine + overhead + profit);

    const MaterialPick &pick = kPicks[h % (sizeof(kPicks) / sizeof(kPicks[0]))];
    const double usage = round2(ratio(h, 5, 0.1, 12.0));
    const QJsonObject child{{QStringLiteral("TYPE"), QStringLiteral("CL")},
                            {QStringLiteral("BH"), QString::fromUtf8(pick.bh)},
                            {QStringLiteral("XMMC"), QString::fromUtf8(pick.name)},
                            {QStringLiteral("GCL"), QString::number(usage, 'f', 2)},
                            {QStringLiteral("DW"), QString::fromUtf8(pick.unit)},
                            {QStringLiteral("TJ"), pick.price},
                            {QStringLiteral("HJ"), round2(usage * pick.price)}};
    return QJsonObject{{QStringLiteral("TYPE"), QStringLiteral("DE")},
                       {QStringLiteral("BH"), id},
                       {QStringLiteral("XMMC"), name},
                       {QStringLiteral("GCL"), QString::number(quantity, 'f', 4)},
                       {QStringLiteral("DW"), unitOfQuota(name, billUnit)},
                       {QStringLiteral("DJ"), price},
                       {QStringLiteral("HJ"), round2(price * quantity)},
                       {QStringLiteral("ZhfMbMx"), feeTemplate(labour, material, machine)},
                       {QStringLiteral("ITEM"), QJsonArray{child}}};
}

QJsonObject CompositionBuilder::feeTemplate(double labour, double material, double machine)
{
    const double overhead = round2((labour + machine) * 0.25);
    const double profit = round2((labour + machine) * 0.12);
    struct Row {
        const char *bh, *mc, *gs, *fl, *zd;
        double je;
    };
    const Row rows[] = {
        {"A", "人工费", "RGF", "", "rgf", labour},
        {"B", "材料费", "CLF", "", "clf", material},
        {"C", "机械费", "JXF", "", "jxf", machine},
        {"D", "管理费", "A+C", "25", "glf", overhead},
        {"E", "利润", "A+C", "12", "lr", profit},
        {"F", "综合单价", "A+B+C+D+E", "", "zhdj", round2(labour + material + machine + overhead + profit)},
    };
    QJsonArray fh;
    for (const Row &r : rows)
        fh.append(QJsonObject{{QStringLiteral("BH"), QString::fromUtf8(r.bh)},
                              {QStringLiteral("MC"), QString::fromUtf8(r.mc)},
                              {QStringLiteral("GS"), QString::fromUtf8(r.gs)},
                              {QStringLiteral("FL"), QString::fromUtf8(r.fl)},
                              {QStringLiteral("JE"), r.je},
                              {QStringLiteral("ZD"), QString::fromUtf8(r.zd)}});
    return QJsonObject{
        {QStringLiteral("MB"), QJsonObject{{QStringLiteral("ROWS"), QJsonObject{{QStringLiteral("FH"), fh}}}}}};
}
