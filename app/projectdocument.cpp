#include "projectdocument.h"

#include <hostapi/cloudzjbean.h>
#include <hostapi/hostconstants.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/tablebaseobject.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

std::unique_ptr<BaseDataItem> readItem(const QJsonObject &o)
{
    auto item = std::make_unique<BaseDataItem>(o.value(QLatin1String("id")).toVariant().toLongLong(),
                                               o.value(QLatin1String("kind")).toInt(BaseDataItem::BillKind));
    // Loading is not an edit: values go in without an open record.
    item->setData(BaseDataItem::CodeRole, o.value(QLatin1String("code")).toString());
    item->setData(BaseDataItem::NameRole, o.value(QLatin1String("name")).toString());
    if (item->isBill()) {
        item->setData(BaseDataItem::UnitRole, o.value(QLatin1String("unit")).toString());
        item->setData(BaseDataItem::FeaturesRole, o.value(QLatin1String("features")).toString());
        item->setData(BaseDataItem::WorkContentRole, o.value(QLatin1String("workContent")).toString());
        item->setData(BaseDataItem::QuantityRole, o.value(QLatin1String("quantity")).toDouble());
        item->setData(BaseDataItem::UnitPriceRole, o.value(QLatin1String("price")).toDouble());
        item->setData(BaseDataItem::KindRole, o.value(QLatin1String("sjkm")).toString());
    }
    item->setExclude(o.value(QLatin1String("exclude")).toBool());
    item->setCsQdbh(o.value(QLatin1String("csCode")).toString());
    for (const QJsonValue &c : o.value(QLatin1String("children")).toArray())
        item->appendChild(readItem(c.toObject()));
    return item;
}

ProjectSettingsInfo readSettings(const QJsonObject &o)
{
    ProjectSettingsInfo s;
    s.time = o.value(QLatin1String("time")).toString();
    s.place = o.value(QLatin1String("place")).toString();
    s.placeCode = o.value(QLatin1String("placeCode")).toString();
    s.altitude = o.value(QLatin1String("altitude")).toString();
    s.taxMode = o.value(QLatin1String("taxMode")).toString();
    s.scope = o.value(QLatin1String("scope")).toString();
    return s;
}


}

ProjectDocument::ProjectDocument() = default;

ProjectDocument::~ProjectDocument() = default;

bool ProjectDocument::loadFile(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("无法打开工程文件 %1：%2").arg(path, file.errorString());
        return false;
    }
    return load(file.readAll(), error);
}

bool ProjectDocument::load(const QByteArray &json, QString *error)
{
    QJsonParseError parseError{};
    const QJsonDocument doc = QJsonDocument::fromJson(json, &parseError);
    const QJsonObject root = doc.object();
    const QJsonArray tables = root.value(QLatin1String("tables")).toArray();
    if (!doc.isObject() || tables.isEmpty()) {
        if (error)
            *error = doc.isObject() ? QStringLiteral("工程文件没有计价表")
                                    : QStringLiteral("工程文件不是有效的JSON：%1").arg(parseError.errorString());
        return false;
    }
    const QJsonObject workInfo = root.value(QLatin1String("unitWork")).toObject();
    auto work = std::make_unique<WorkBaseObject>(workInfo.value(QLatin1String("name")).toString());
    work->setQdSpec(workInfo.value(QLatin1String("qdSpec")).toString());
    work->setJswjIndex(workInfo.value(QLatin1String("jswjIndex")).toInt());
    work->setDelbIndex(workInfo.value(QLatin1String("delbIndex")).toInt());
    for (const QJsonValue &t : tables) {
        const QJsonObject table = t.toObject();
        JJBTableBase *jjb = work->addPricingTable(table.value(QLatin1String("name")).toString(),
                                                  table.value(QLatin1String("kind")).toInt());
        for (const QJsonValue &i : table.value(QLatin1String("items")).toArray())
            jjb->rootItem()->appendChild(readItem(i.toObject()));
    }
    for (const QJsonValue &m : root.value(QLatin1String("materials")).toArray())
        work->materialTable()->addMaterial(GljBean::fromJson(m.toObject()));
    m_name = root.value(QLatin1String("name")).toString();
    m_settings = readSettings(root.value(QLatin1String("settings")).toObject());
    m_work = std::move(work);
    return true;
}

JJBTableBase *ProjectDocument::billTable() const
{
    return m_work ? m_work->tableOfKind(JJBTableBase::BillTableKind) : nullptr;
}

JJBTableBase *ProjectDocument::measureTable() const
{
    return m_work ? m_work->tableOfKind(JJBTableBase::MeasureTableKind) : nullptr;
}

GeneralTableBase *ProjectDocument::materialTable() const
{
    return m_work ? m_work->materialTable() : nullptr;
}

void ProjectDocument::seedProjectSettings() const
{
    if (!ProjectSettingHelper::HasProjectSettings())
        ProjectSettingHelper::SetProjectSettingsInfo(m_settings);
}

QList<BaseDataItem *> ProjectDocument::allBills() const
{
    QList<BaseDataItem *> bills;
    if (!m_work)
        return bills;
    for (JJBTableBase *t : m_work->pricingTables())
        bills += t->rootItem()->bills();
    return bills;
}

BaseDataItem *ProjectDocument::billByCode(const QString &code) const
{
    for (BaseDataItem *b : allBills()) {
        if (b->text(BaseDataItem::CodeRole) == code)
            return b;
    }
    return nullptr;
}

BaseDataItem *ProjectDocument::neighbourBill(BaseDataItem *from, bool forward, bool skipPriced) const
{
    const QList<BaseDataItem *> bills = allBills();
    int i = bills.indexOf(from);
    if (i < 0)
        return nullptr;
    for (i += forward ? 1 : -1; i >= 0 && i < bills.size(); i += forward ? 1 : -1) {
        const bool priced = bills[i]->data(BaseDataItem::UnitPriceRole).toDouble() != 0.0;
        if (!skipPriced || !priced)
            return bills[i];
    }
    return nullptr;
}

JJBTableBase *ProjectDocument::tableOf(const BaseDataItem *item) const
{
    if (!m_work || !item)
        return nullptr;
    const BaseDataItem *top = item;
    while (top->parentItem())
        top = top->parentItem();
    for (JJBTableBase *t : m_work->pricingTables()) {
        if (t->rootItem() == top)
            return t;
    }
    return nullptr;
}

void ProjectDocument::applyComposition(BaseDataItem *bill, const QJsonObject &matched, bool replace)
{
    if (!bill)
        return;
    const CloudZjBean bean = CloudZjBean::fromJson(matched);
    RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(tableOf(bill), 8, QStringLiteral("智能组价")));
    bill->setData(BaseDataItem::UnitPriceRole, bean.getZhdj());
    if (replace) {
        if (isMeasureBill(bill))
            bill->setData(BaseDataItem::WorkContentRole, bean.GetGcnr());
        else
            bill->setData(BaseDataItem::FeaturesRole, bean.getXmtz());
    }
    RURecordControl::EndRecord();
}

bool ProjectDocument::isMeasureBill(const BaseDataItem *bill)
{
    const QString kind = bill ? bill->text(BaseDataItem::KindRole).toUpper() : QString();
    return kind.contains(CXMZJXQDAEnName) || kind.contains(CXMZJXQDBEnName);
}

void ProjectDocument::applyFeatureText(BaseDataItem *bill, const QString &text)
{
    if (!bill)
        return;
    RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(tableOf(bill), 8, QStringLiteral("修改项目特征")));
    bill->setData(isMeasureBill(bill) ? BaseDataItem::WorkContentRole : BaseDataItem::FeaturesRole, text);
    RURecordControl::EndRecord();
}

int ProjectDocument::applyMaterialPrices(const QList<CloudCjyjcBean> &results)
{
    GeneralTableBase *table = materialTable();
    if (!table)
        return 0;
    int changed = 0;
    RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(table, 0, QStringLiteral("材料价格选用")));
    for (const CloudCjyjcBean &r : results) {
        GljBean *material = table->materialByGuid(r.getGuid());
        if (!r.getChecked() || !material || r.getYdj() <= -1000.0)
            continue;
        GljBean values = *material;
        values.SetTj(r.getYdj());
        table->updateMaterial(material, values);
        ++changed;
    }
    RURecordControl::EndRecord();
    return changed;
}
