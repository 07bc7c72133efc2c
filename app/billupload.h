#pragma once
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class BaseDataItem;
class LtdInfo;

// Uploads the project's bills into an open saving task, in batches, and
// collects the bills the cloud refused.
class BillUpload
{
public:
    enum Content { FullComposition = 0, UnitPrice = 1, BillOnly = 2 };
    static constexpr int BatchSize = 500;
    static constexpr int MaxChapterDepth = 32;

    struct Task
    {
        LtdInfo *server = nullptr;
        QString taskId;
        QString chapterId;        // "null" or empty: the task's own chapter
        QString defaultChapterId; // made at the root when the task has no chapter
        int content = FullComposition;
        bool childChapters = false;
        int chapterLevel = 0;
    };

    struct Result
    {
        int saved = 0;
        QList<BaseDataItem *> failed;
        QString error; // the cloud's message when a batch was refused
    };

    BillUpload(const Task &task, const QList<BaseDataItem *> &bills);

    int batchCount() const;
    // Sends every batch; `progress` hears the number of batches done.
    Result run(const std::function<void(int done)> &progress = {}) const;

    // One bill as the upload sends it.
    static QJsonObject billJson(const BaseDataItem *bill, int content, const QStringList &chapterPath);
    // The sections above `bill`, outermost first, at most `levels` of them.
    static QStringList chapterPath(const BaseDataItem *bill, int levels);
    // The composition of a bill that keeps no quota lines: the bill itself
    // priced as one line.
    static QString compositionText(const BaseDataItem *bill);

private:
    QJsonObject batchRequest(int batch) const;

    Task m_task;
    QList<BaseDataItem *> m_bills;
};
