#include "materialsaverules.h"

#include <hostapi/gljbean.h>

#include <QJsonArray>
#include <QJsonObject>

QString MaterialSaveRules::failedCount(const QString &total, const QString &saved)
{
    bool ok = false;
    const int all = total.toInt(&ok);
    if (!ok || all == 0)
        return saved;
    return QString::number(all - saved.toInt());
}

QString MaterialSaveRules::promptText(const QString &total, const QString &saved)
{
    return QStringLiteral("选择范围内共") + total + QStringLiteral("条材价,其中保存成功") + saved
           + QStringLiteral("条,\n保存失败(不满足保存条件)") + failedCount(total, saved) + QStringLiteral("条");
}

QList<QPair<QString, QString>> MaterialSaveRules::libraries(const QJsonValue &data)
{
    const QJsonArray list = data.isArray() ? data.toArray() : data.toObject().value(QStringLiteral("sjksys")).toArray();
    QList<QPair<QString, QString>> out;
    for (const QJsonValue &v : list) {
        const QJsonObject o = v.toObject();
        out.append({o.value(QStringLiteral("kmms")).toString(), o.value(QStringLiteral("_id")).toVariant().toString()});
    }
    return out;
}

bool MaterialSaveRules::storable(const GljBean &material)
{
    const QString kind = material.GetZhfl();
    return !material.GetClmc().trimmed().isEmpty() && material.GetTj() > 0 && kind != QStringLiteral("人工")
           && kind != QStringLiteral("机械");
}
