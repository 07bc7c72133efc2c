#include "compositionwriter.h"
#include "projectdocument.h"

#include <hostapi/basedataitem.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/tablebaseobject.h>

#include <cmath>

namespace {
double cents(double value)
{
    return std::round(value * 100.0) / 100.0;
}
}

void CompositionWriter::applyOne(BaseDataItem *bill, const QJsonObject &matched, bool replace)
{
    if (!bill)
        return;
    RURecordControl::BeginRecord(
        TableBaseObject::GetTableRedoUIInfo(m_project.tableOf(bill), 8, QStringLiteral("智能组价")));
    write(bill, prepare(matched), replace);
    RURecordControl::EndRecord();
}

int CompositionWriter::applyAll(const QList<QPair<BaseDataItem *, QJsonObject>> &choices, bool replace)
{
    QList<Choice> prepared;
    for (const auto &choice : choices)
        prepared.append(qMakePair(choice.first, prepare(choice.second)));
    return applyAll(prepared, replace);
}

int CompositionWriter::applyAll(const QList<Choice> &choices, bool replace)
{
    if (choices.isEmpty())
        return 0;
    RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(m_project.tableOf(choices.first().first), 8,
                                                                     QStringLiteral("智能云组价")));
    for (int i = 0; i < choices.size(); ++i) {
        if (m_pause && i > 0 && i % m_sliceSize == 0)
            m_pause();
        write(choices.at(i).first, choices.at(i).second, replace);
    }
    RURecordControl::EndRecord();
    return choices.size();
}

void CompositionWriter::setSlices(int size, std::function<void()> pause)
{
    m_sliceSize = size;
    m_pause = size > 0 ? std::move(pause) : nullptr;
}

CompositionWriter::Values CompositionWriter::prepare(const QJsonObject &matched)
{
    const CloudZjBean bean = CloudZjBean::fromJson(matched);
    const QList<cloudZjnr> lines = bean.getZjnrlist();
    return {cloudZjnr::toZjnrText(lines), lines.isEmpty() ? bean.getZhdj() : unitPrice(lines), bean.getXmtz(),
            bean.GetGcnr()};
}

void CompositionWriter::write(BaseDataItem *bill, const Values &values, bool replace)
{
    bill->setData(BaseDataItem::CompositionRole, values.composition);
    bill->setData(BaseDataItem::UnitPriceRole, values.unitPrice);
    bill->setData(BaseDataItem::FontColorRole, markColor());
    if (!replace)
        return;
    if (ProjectDocument::isMeasureBill(bill))
        bill->setData(BaseDataItem::WorkContentRole, values.workContent);
    else
        bill->setData(BaseDataItem::FeaturesRole, values.features);
}

double CompositionWriter::unitPrice(const QList<cloudZjnr> &lines)
{
    double total = 0.0;
    for (const cloudZjnr &line : lines) {
        if (line.getParentId() != -1)
            continue;
        bool hasQuantity = false;
        const double quantity = line.getGcl().toDouble(&hasQuantity);
        total += cents(line.getZhdj().toDouble() * (hasQuantity ? quantity : 1.0));
    }
    return cents(total);
}
