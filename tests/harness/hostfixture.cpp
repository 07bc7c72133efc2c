#include "hostfixture.h"

#include <hostapi/apppaths.h>
#include <hostapi/hostlog.h>
#include <hostapi/modalrun.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>

#include <QMutex>
#include <QTest>

namespace {
QMutex s_logMutex;
}

HostFixture::HostFixture()
    : m_channel(std::make_shared<ScriptedChannel>()), m_log(std::make_shared<QStringList>())
{
    QVERIFY2(m_dir.isValid(), "cannot create a temporary application folder");
    SetAppPath(m_dir.path());
    Users::Instance()->Kvy()->setLogout(true);
    ServicesUtil::setChannel(m_channel);
    MessageBoxes::setHandler([this](const MessageBoxRequest &r) {
        m_messages << r;
        return m_messageAnswers.isEmpty() ? 0 : m_messageAnswers.dequeue();
    });
    ModalRun::setAnswerer([this](QDialog *dialog) {
        m_modalRuns << QString::fromLatin1(dialog->metaObject()->className());
        return m_modalAnswers.isEmpty() ? 0 : m_modalAnswers.dequeue()(dialog);
    });
    auto log = m_log;
    HostLog::setObserver([log](const QString &line) {
        QMutexLocker lock(&s_logMutex);
        *log << line;
    });
}

HostFixture::~HostFixture()
{
    HostLog::setObserver(nullptr);
    ModalRun::setAnswerer(nullptr);
    MessageBoxes::setHandler(nullptr);
    ServicesUtil::setChannel(nullptr);
    Users::Instance()->Kvy()->setLogout(true);
    SetAppPath(QString());
}

QString HostFixture::appDir() const
{
    return GetAppPath();
}

QStringList HostFixture::messageTexts() const
{
    QStringList texts;
    for (const MessageBoxRequest &r : m_messages)
        texts << r.text;
    return texts;
}

QStringList HostFixture::logLines() const
{
    QMutexLocker lock(&s_logMutex);
    return *m_log;
}

QStringList HostFixture::exceptionReports() const
{
    QStringList out;
    for (const QString &line : logLines())
        if (line.contains(QLatin1String(" exception: ")))
            out << line;
    return out;
}
