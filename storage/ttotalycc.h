#pragma once
#include <hostapi/ztitlemodal.h>

#include <QPointer>
#include <QString>

class LtdInfo;
class QPushButton;
class TBzqdycc;
class TYcc;
class WizardSteps;
class zTabContent;

// The bill storage wizard ("云存储"): the library page, then the chapter page.
// "确定" opens a saving task in the cloud and hands the host what it needs to
// upload the bills.
class TTotalYcc : public zTitleModal
{
    Q_OBJECT
public:
    explicit TTotalYcc(QWidget *parent = nullptr);
    void CreateUI();

    void setQdcount(int count);
    // The scope the second page shows ("当前项目", "定义块").
    void UpText(const QString &scope);
    bool GetIsQdChecked() const;
    QString GetQdColor() const;
    QString GetXmk() const;
    QString taskId() const { return m_taskId; }

    short currentStep() const { return curStep; }
    TBzqdycc *libraryPage() const;
    TYcc *chapterPage() const;
    zTabContent *pages() const { return m_pages; }
    QPushButton *nextButton() const { return m_btnNext; }
    QPushButton *previousButton() const { return m_btnPrevious; }
    QPushButton *okButton() const { return m_btnOk; }
    QPushButton *cancelButton() const { return m_btnCancel; }

signals:
    void signalCheckQdData(LtdInfo *server, QString taskId, QString chapterId, int content, QString defaultChapterId,
                           bool childChoice, int chapterLevel, bool replace);

public slots:
    void NextStep();
    void QdButton();
    void Switchover(short step);
    void resetKvData();
    void resetPriData(const QString &serverName);
    void resetPriLogin(const QString &serverName);

private:
    TBzqdycc *firstPage();
    TYcc *secondPage();
    bool saveQdStart(LtdInfo *server);

    short curStep = 0;
    QString m_qdcount = QStringLiteral("0");
    QString m_scope = QStringLiteral("当前项目");
    QString m_taskId;
    QString m_loadedLibrary;
    LtdInfo *m_loadedServer = nullptr;
    QPointer<TBzqdycc> m_bzqdycc;
    QPointer<TYcc> m_ycc;
    zTabContent *m_pages = nullptr;
    WizardSteps *m_steps = nullptr;
    QPushButton *m_btnNext = nullptr;
    QPushButton *m_btnPrevious = nullptr;
    QPushButton *m_btnOk = nullptr;
    QPushButton *m_btnCancel = nullptr;
};
