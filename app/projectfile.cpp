#include "projectfile.h"

#include <hostapi/basedataitem.h>
#include <hostapi/generaltablebase.h>
#include <hostapi/jjbtablebase.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

// Item values with a key of their own; any other role is kept under "values".
const QList<QPair<QString, int>> &namedRoles()
{
    static const QList<QPair<QString, int>> roles{
        {QStringLiteral("code"), BaseDataItem::CodeRole},
        {QStringLiteral("name"), BaseDataItem::NameRole},
        {QStringLiteral("unit"), BaseDataItem::UnitRole},
        {QStringLiteral("features"), BaseDataItem::FeaturesRole},
        {QStringLiteral("workContent"), BaseDataItem::WorkContentRole},
        {QStringLiteral("quantity"), BaseDataItem::QuantityRole},
        {QStringLiteral("price"), BaseDataItem::UnitPriceRole},
        {QStringLiteral("sjkm"), BaseDataItem::KindRole},
        {QStringLiteral("markColor"), BaseDataItem::MarkColorRole},
        {QStringLiteral("fontColor"), BaseDataItem::FontColorRole},
        {QStringLiteral("composition"), BaseDataItem::CompositionRole},
    };
    return roles;
}

struct Flag
{
    const char *key;
    bool (BaseDataItem::*get)() const;
    void (BaseDataItem::*set)(bool);
};

const Flag kFlags[] = {
    {"exclude", &BaseDataItem::IsExclude, &BaseDataItem::setExclude},
    {"tempDeleted", &BaseDataItem::IsTempDeleted, &BaseDataItem::setTempDeleted},
    {"readOnly", &BaseDataItem::IsReadOnly, &BaseDataItem::setReadOnly},
    {"selfMade", &BaseDataItem::IsSelfMade, &BaseDataItem::setSelfMade},
};

std::unique_ptr<BaseDataItem> readItem(const QJsonObject &o)
{
    auto item = std::make_unique<BaseDataItem>(o.value(QLatin1String("id")).toVariant().toLongLong(),
                                               o.value(QLatin1String("kind")).toInt(BaseDataItem::BillKind));
    // Loading is not an edit: values go in without an open record.
    for (const auto &r : namedRoles()) {
        if (o.contains(r.first))
            item->setData(r.second, o.value(r.first).toVariant());
    }
    const QJsonObject values = o.value(QLatin1String("values")).toObject();
    for (auto v = values.begin(); v != values.end(); ++v)
        item->setData(v.key().toInt(), v.value().toVariant());
    for (const Flag &f : kFlags)
        (item.get()->*f.set)(o.value(QLatin1String(f.key)).toBool());
    item->setCsQdbh(o.value(QLatin1String("csCode")).toString());
    for (const QJsonValue &c : o.value(QLatin1String("children")).toArray())
        item->appendChild(readItem(c.toObject()));
    return item;
}

QJsonObject writeItem(const BaseDataItem &item)
{
    QJsonObject o{{QStringLiteral("id"), item.GetID()}, {QStringLiteral("kind"), item.GetKind()}};
    QJsonObject values;
    for (int role : item.roles()) {
        const QJsonValue value = QJsonValue::fromVariant(item.data(role));
        const auto named = std::find_if(namedRoles().begin(), namedRoles().end(),
                                        [role](const QPair<QString, int> &r) { return r.second == role; });
        if (named != namedRoles().end())
            o.insert(named->first, value);
        else
            values.insert(QString::number(role), value);
    }
    if (!values.isEmpty())
        o.insert(QStringLiteral("values"), values);
    for (const Flag &f : kFlags) {
        if ((item.*f.get)())
            o.insert(QLatin1String(f.key), true);
    }
    if (item.GetCsQdbh() != item.text(BaseDataItem::CodeRole))
        o.insert(QStringLiteral("csCode"), item.GetCsQdbh());
    QJsonArray children;
    for (const BaseDataItem *c : item.children())
        children.append(writeItem(*c));
    if (!children.isEmpty())
        o.insert(QStringLiteral("children"), children);
    return o;
}

const char *const kSettingKeys[] = {"time", "place", "placeCode", "altitude", "taxMode", "scope"};

QString *settingField(ProjectSettingsInfo &s, int i)
{
    QString *fields[] = {&s.time, &s.place, &s.placeCode, &s.altitude, &s.taxMode, &s.scope};
    return fields[i];
}

QString structureError(const QJsonDocument &doc)
{
    const QJsonObject root = doc.object();
    // Files written before the format was named carry tables and no marks;
    // they are read as the first version.
    const bool unmarked = !root.contains(QLatin1String("format")) && root.value(QLatin1String("tables")).isArray();
    if (!doc.isObject() || (!unmarked && root.value(QLatin1String("format")).toString() != ProjectFile::formatName()))
        return QStringLiteral("这不是Velora工程文件");
    const QJsonValue version = root.value(QLatin1String("version"));
    if (!unmarked && (!version.isDouble() || version.toInt() < 1 || version.toInt() > ProjectFile::Version))
        return QStringLiteral("不支持的工程文件版本：%1（本程序可打开版本 %2）")
            .arg(version.toVariant().toString())
            .arg(ProjectFile::Version);
    const QJsonArray tables = root.value(QLatin1String("tables")).toArray();
    if (tables.isEmpty())
        return QStringLiteral("工程文件没有计价表");
    for (const QJsonValue &t : tables) {
        if (!t.isObject() || !t.toObject().value(QLatin1String("items")).isArray())
            return QStringLiteral("工程文件的计价表已损坏");
    }
    const QJsonValue materials = root.value(QLatin1String("materials"));
    if (!materials.isUndefined() && !materials.isArray())
        return QStringLiteral("工程文件的人材机表已损坏");
    return QString();
}

}

bool ProjectFile::read(const QByteArray &bytes, ProjectContent *content, QString *error)
{
    QJsonParseError parseError{};
    const QJsonDocument doc = QJsonDocument::fromJson(bytes, &parseError);
    QString problem = doc.isNull() ? QStringLiteral("工程文件已损坏：%1（第 %2 字节）")
                                         .arg(parseError.errorString())
                                         .arg(parseError.offset)
                                   : structureError(doc);
    if (!problem.isEmpty()) {
        if (error)
            *error = problem;
        return false;
    }
    const QJsonObject root = doc.object();
    const QJsonObject workInfo = root.value(QLatin1String("unitWork")).toObject();
    auto work = std::make_unique<WorkBaseObject>(workInfo.value(QLatin1String("name")).toString());
    work->setQdSpec(workInfo.value(QLatin1String("qdSpec")).toString());
    work->setJswjIndex(workInfo.value(QLatin1String("jswjIndex")).toInt());
    work->setDelbIndex(workInfo.value(QLatin1String("delbIndex")).toInt());
    for (const QJsonValue &t : root.value(QLatin1String("tables")).toArray()) {
        const QJsonObject table = t.toObject();
        JJBTableBase *jjb = work->addPricingTable(table.value(QLatin1String("name")).toString(),
                                                  table.value(QLatin1String("kind")).toInt());
        for (const QJsonValue &i : table.value(QLatin1String("items")).toArray())
            jjb->rootItem()->appendChild(readItem(i.toObject()));
    }
    for (const QJsonValue &m : root.value(QLatin1String("materials")).toArray())
        work->materialTable()->addMaterial(GljBean::fromJson(m.toObject()));
    const QJsonObject settings = root.value(QLatin1String("settings")).toObject();
    content->settings = ProjectSettingsInfo();
    for (int i = 0; i < 6; ++i)
        *settingField(content->settings, i) = settings.value(QLatin1String(kSettingKeys[i])).toString();
    content->name = root.value(QLatin1String("name")).toString();
    content->work = std::move(work);
    return true;
}

QByteArray ProjectFile::write(const QString &name, const WorkBaseObject &work, const ProjectSettingsInfo &settings)
{
    QJsonArray tables;
    for (JJBTableBase *t : work.pricingTables()) {
        QJsonArray items;
        for (const BaseDataItem *i : t->rootItem()->children())
            items.append(writeItem(*i));
        tables.append(QJsonObject{{QStringLiteral("name"), t->GetName()},
                                  {QStringLiteral("kind"), t->GetTableKind()},
                                  {QStringLiteral("items"), items}});
    }
    QJsonArray materials;
    for (const GljBean *m : work.materialTable()->materials())
        materials.append(m->toJson());
    ProjectSettingsInfo s = settings;
    QJsonObject settingsJson;
    for (int i = 0; i < 6; ++i)
        settingsJson.insert(QLatin1String(kSettingKeys[i]), *settingField(s, i));
    const QJsonObject root{
        {QStringLiteral("format"), formatName()},
        {QStringLiteral("version"), Version},
        {QStringLiteral("name"), name},
        {QStringLiteral("unitWork"),
         QJsonObject{{QStringLiteral("name"), work.GetName()},
                     {QStringLiteral("qdSpec"), work.GetQdSpec()},
                     {QStringLiteral("jswjIndex"), work.GetJswjIndex()},
                     {QStringLiteral("delbIndex"), work.GetDelbIndex()}}},
        {QStringLiteral("settings"), settingsJson},
        {QStringLiteral("tables"), tables},
        {QStringLiteral("materials"), materials},
    };
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}
