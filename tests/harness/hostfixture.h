#pragma once
#include "scriptedchannel.h"

#include <hostapi/messagebox.h>

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QQueue>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>

// Everything one test function needs from the host, isolated: its own
// temporary application folder, a scripted cloud channel, captured message
// boxes, queued answers for modal dialogs and captured exception reports.
// Create it in init(), destroy it in cleanup().
class HostFixture
{
public:
    HostFixture();
    ~HostFixture();

    QString appDir() const;
    ScriptedChannel &channel() { return *m_channel; }

    // Message boxes shown since the fixture was made, in order.
    QList<MessageBoxRequest> messages() const { return m_messages; }
    QStringList messageTexts() const;
    // The answer the next message box returns (default 0).
    void answerNextMessage(int answer) { m_messageAnswers.enqueue(answer); }

    // The next modal run is answered by `answer` (it may fill the dialog in);
    // a run with no answer queued returns 0.
    void answerNextModal(std::function<int(QDialog *)> answer) { m_modalAnswers.enqueue(std::move(answer)); }
    // Class names of every dialog run modally, answered or not.
    QStringList modalRuns() const { return m_modalRuns; }

    // Lines of exception reports (ProcExceptionNew) since the fixture was made.
    QStringList exceptionReports() const;
    QStringList logLines() const;

private:
    QTemporaryDir m_dir;
    std::shared_ptr<ScriptedChannel> m_channel;
    QList<MessageBoxRequest> m_messages;
    QQueue<int> m_messageAnswers;
    QQueue<std::function<int(QDialog *)>> m_modalAnswers;
    QStringList m_modalRuns;
    std::shared_ptr<QStringList> m_log;
};
