#pragma once
#include <QList>
#include <QStringList>

#include <functional>

class BaseDataItem;
class LtdInfo;
class ProjectDocument;

// The host's side of "项目云特征": each bill gets the features (the work
// content for a measure bill) of its best cloud match. Read-only bills and
// excluded ones (organisation measures) are passed over. Runs inside the undo
// record the dialog holds open, so the whole fill is one step.
class ProjectFeatureFill
{
public:
    struct Summary
    {
        int filled = 0;
        int unmatched = 0;
        int skipped = 0;
        bool cancelled = false;
        bool unanswered = false; // the rest of the bills were not asked
        // Why the first refused or unanswered match failed ("msg" or "云端未响应").
        QString refusal;
    };
    // Called before each bill with the bills done so far; false cancels.
    using Progress = std::function<bool(int done, int total)>;

    ProjectFeatureFill(ProjectDocument *project, LtdInfo *server, int sourceMask, const QStringList &projectIds);

    Summary run(const QList<BaseDataItem *> &bills, bool skipPriced, const Progress &progress = Progress());
    static QString summaryText(const Summary &summary);

private:
    // The best match's text, empty when the cloud has none; a refused or
    // unanswered match notes its reason in `summary` when none is noted yet.
    QString bestText(BaseDataItem *bill, Summary &summary) const;

    ProjectDocument *m_project;
    LtdInfo *m_server;
    int m_sourceMask;
    QStringList m_projectIds;
};
