#pragma once
#include "pricecheckinputs.h"

#include <hostapi/ztitlemodal.h>

#include <QMetaObject>
#include <QPointer>
#include <QString>

class LtdInfo;
class QLabel;
class QPushButton;
class TInitial;
class TNextstep;
class WizardSteps;
class zTabContent;

// The unit-price cloud check wizard: step one shows the influence factors,
// the scope and the server; step two asks with how many similar cloud bills
// to compare. "确定" closes it and hands the host the server and that count.
class TQdtjyjc : public zTitleModal
{
    Q_OBJECT
public:
    explicit TQdtjyjc(QWidget *parent = nullptr);

    void CreateUI();
    void InitUI();

    void setSjDdHb(QString &sj, QString &dd, QString &hb);
    void setYyfwText(const QString &text);
    QString getSJ() const;
    QString getDD() const;
    // Time, place and altitude of the first page with the second page's count.
    PriceCheckInputs inputs() const;

    short currentStep() const { return curStep; }
    TInitial *initialPage() const;
    TNextstep *nextPage() const;
    zTabContent *pages() const { return m_pages; }
    QPushButton *previousButton() const { return m_btnPrevious; }
    QPushButton *okButton() const { return m_btnOk; }
    QPushButton *nextButton() const { return m_btnNext; }
    QPushButton *closeButton() const { return m_btnClose; }

    // The caption bar's close button closes the wizard like "关闭".
    void actCancel() override;

signals:
    void signalQdButtonClicked(LtdInfo *server, int matchNum);
    void signalYxysChanged(QString sj, QString dd);

private slots:
    void NextStep();
    void PreviousStep();
    void Switchover(short step);
    void QdButton();
    void GbButton();
    // A login change elsewhere rebuilt the server list.
    void backToFirstPage();

private:
    TInitial *firstPage();
    TNextstep *secondPage();

    short curStep = 0;
    QPointer<TInitial> m_initial;
    QPointer<TNextstep> m_next;
    QLabel *m_lblTitle = nullptr;
    QLabel *m_lblDescribe = nullptr;
    QLabel *m_lblLine1 = nullptr;
    QLabel *m_lblLine2 = nullptr;
    zTabContent *m_pages = nullptr;
    WizardSteps *m_steps = nullptr;
    QPushButton *m_btnNext = nullptr;
    QPushButton *m_btnPrevious = nullptr;
    QPushButton *m_btnOk = nullptr;
    QPushButton *m_btnClose = nullptr;
    QMetaObject::Connection m_forward;
};
