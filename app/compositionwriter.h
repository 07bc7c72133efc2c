#pragma once
#include <hostapi/cloudzjnr.h>

#include <QJsonObject>
#include <QList>
#include <QPair>

#include <functional>

class BaseDataItem;
class ProjectDocument;

// Writes chosen cloud compositions into the project's bills: the quota lines
// with their quantities, prices and fee templates, the composite unit price
// recomputed from them, the red mark of an applied bill and, when asked, the
// cloud bill's features (work content for a measure bill).
class CompositionWriter
{
public:
    // What a cloud bill writes, read from its reply; reading it touches no
    // project, so a background run may do it (parsing thousands of
    // compositions would keep the GUI thread busy for long).
    struct Values
    {
        QString composition;
        double unitPrice = 0.0;
        QString features;
        QString workContent;
    };
    using Choice = QPair<BaseDataItem *, Values>;

    explicit CompositionWriter(ProjectDocument &project) : m_project(project) {}

    static Values prepare(const QJsonObject &matched);

    // One bill, one undo step.
    void applyOne(BaseDataItem *bill, const QJsonObject &matched, bool replace);
    // Every (bill, matched bill) pair, together one undo step. Returns how
    // many were written.
    int applyAll(const QList<QPair<BaseDataItem *, QJsonObject>> &choices, bool replace);
    int applyAll(const QList<Choice> &choices, bool replace);
    // applyAll calls `pause` after every `size` bills but the last, inside
    // its one undo step: a caller on the GUI thread lets the loop run there.
    void setSlices(int size, std::function<void()> pause);

    // The sum of the top-level lines' price × quantity (1 when a line has
    // none), each rounded to cents.
    static double unitPrice(const QList<cloudZjnr> &lines);
    static QString markColor() { return QStringLiteral("#FF0000"); }

private:
    void write(BaseDataItem *bill, const Values &values, bool replace);
    ProjectDocument &m_project;
    int m_sliceSize = 0;
    std::function<void()> m_pause;
};
