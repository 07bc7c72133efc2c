#include "projectdocument.h"
#include "projectfile.h"

#include <hostapi/cloudzjbean.h>
#include <hostapi/hostconstants.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/tablebaseobject.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

ProjectDocument::ProjectDocument() = default;

ProjectDocument::~ProjectDocument() = default;

ProjectDocument::ProjectDocument(ProjectDocument &&other) = default;

ProjectDocument &ProjectDocument::operator=(ProjectDocument &&other) = default;

ProjectDocument ProjectDocument::blank(const QString &name)
{
    ProjectDocument project;
    project.m_name = name;
    project.m_work = std::make_unique<WorkBaseObject>(name);
    project.m_work->addPricingTable(QStringLiteral("分部分项工程"), JJBTableBase::BillTableKind);
    project.m_work->addPricingTable(QStringLiteral("措施项目"), JJBTableBase::MeasureTableKind);
    project.m_settings = ProjectSettingHelper::GetProjectSettingsInfo();
    return project;
}

bool ProjectDocument::loadFile(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("无法打开工程文件 %1：%2").arg(path, file.errorString());
        return false;
    }
    if (!load(file.readAll(), error))
        return false;
    m_filePath = path.startsWith(QLatin1Char(':')) ? QString() : QFileInfo(path).absoluteFilePath();
    return true;
}

bool ProjectDocument::load(const QByteArray &json, QString *error)
{
    ProjectContent content;
    if (!ProjectFile::read(json, &content, error))
        return false;
    m_name = content.name;
    m_settings = content.settings;
    m_work = std::move(content.work);
    m_filePath.clear();
    return true;
}

QByteArray ProjectDocument::toJson() const
{
    return m_work ? ProjectFile::write(m_name, *m_work, ProjectSettingHelper::GetProjectSettingsInfo()) : QByteArray();
}

bool ProjectDocument::saveFile(const QString &path, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(toJson()) < 0 || !file.commit()) {
        if (error)
            *error = QStringLiteral("无法保存工程文件 %1：%2").arg(path, file.errorString());
        return false;
    }
    m_filePath = QFileInfo(path).absoluteFilePath();
    m_settings = ProjectSettingHelper::GetProjectSettingsInfo();
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
