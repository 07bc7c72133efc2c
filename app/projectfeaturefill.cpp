#include "projectfeaturefill.h"
#include "projectdocument.h"

#include <features/featurecloudreply.h>

#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudparams.h>

ProjectFeatureFill::ProjectFeatureFill(ProjectDocument *project, LtdInfo *server, int sourceMask,
                                       const QStringList &projectIds)
    : m_project(project), m_server(server), m_sourceMask(sourceMask), m_projectIds(projectIds)
{
}

ProjectFeatureFill::Summary ProjectFeatureFill::run(const QList<BaseDataItem *> &bills, bool skipPriced,
                                                    const Progress &progress)
{
    Summary summary;
    for (int i = 0; i < bills.size(); ++i) {
        if (progress && !progress(i, bills.size())) {
            summary.cancelled = true;
            break;
        }
        BaseDataItem *bill = bills.at(i);
        const bool priced = bill->data(BaseDataItem::UnitPriceRole).toDouble() != 0.0;
        if (bill->IsReadOnly() || bill->IsExcludeInChain() || (skipPriced && priced)) {
            ++summary.skipped;
            continue;
        }
        // A server that did not answer is not asked again: each try could
        // wait out the whole time-out.
        const QString text = summary.unanswered ? QString() : bestText(bill, summary);
        if (text.isEmpty()) {
            ++summary.unmatched;
            continue;
        }
        m_project->applyFeatureText(bill, text);
        ++summary.filled;
    }
    if (progress && !summary.cancelled)
        progress(bills.size(), bills.size());
    return summary;
}

QString ProjectFeatureFill::bestText(BaseDataItem *bill, Summary &summary) const
{
    CloudParams params;
    params.setPage(1);
    params.setPageSize(1);
    QJsonObject reply;
    const bool answered = CloudBusiness::MatchQdtz(bill, params, m_server, reply, m_sourceMask, m_projectIds);
    summary.unanswered = !answered;
    if (!answered || reply.value(QStringLiteral("code")).toInt() != 0) {
        if (summary.refusal.isEmpty())
            summary.refusal = answered ? reply.value(QStringLiteral("msg")).toString() : QStringLiteral("云端未响应");
        return QString();
    }
    const QList<CloudZnytzBean> results = FeatureCloudReply::results(reply);
    if (results.isEmpty())
        return QString();
    return ProjectDocument::isMeasureBill(bill) ? results.first().getGcnr() : results.first().getXmtz();
}

QString ProjectFeatureFill::summaryText(const Summary &summary)
{
    QString text = QStringLiteral("已填写%1条清单的项目特征，%2条未找到匹配清单，%3条跳过。")
                       .arg(summary.filled)
                       .arg(summary.unmatched)
                       .arg(summary.skipped);
    if (summary.cancelled)
        text += QStringLiteral("（已取消）");
    if (!summary.refusal.isEmpty())
        text += QLatin1Char('\n') + summary.refusal;
    return text;
}
