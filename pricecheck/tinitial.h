#pragma once
#include "pricecheckinputs.h"

#include <cloud/cloudserverowner.h>

#include <hostapi/zbaseform.h>

#include <QList>
#include <QPointer>
#include <QString>

class CloudServerCombox;
class QLabel;
class QPushButton;
class TQdtjyjc_Yxys;

// First page of the unit-price check wizard: the influence factors (time,
// place, altitude), the scope and the cloud server the check runs on.
class TInitial : public zBaseForm, public CloudServerOwner
{
    Q_OBJECT
public:
    explicit TInitial(QWidget *parent = nullptr);
    // Builds the page, then asks for the server list and the saved choice.
    void CreateUI();

    QString getsj() const;
    QString getdd() const;

    void setLblSjsz(const QString &text);
    void setLblDdsz(const QString &text);
    void setLblHbsz(const QString &text);
    void setLblDqjjb(const QString &text);

    // Time, place and altitude as the page shows them.
    const PriceCheckInputs &inputs() const { return m_inputs; }

    CloudServerCombox *serverCombo() const { return m_comServer; }
    QPushButton *modifyButton() const { return m_btnXg; }
    QLabel *timeLabel() const { return m_lblSjsz; }
    QLabel *placeLabel() const { return m_lblDdsz; }
    QLabel *altitudeLabel() const { return m_lblHbsz; }
    QLabel *scopeLabel() const { return m_lblDqjjb; }

public slots:
    void Modify();
    void slotTimeAndPathChanged(const QString &sj, const QString &dd);

signals:
    void signalYxysChanged(QString sj, QString dd);

private:
    void buildLayout();

    QLabel *m_lblYxys = nullptr;
    QLabel *m_lblSj = nullptr;
    QLabel *m_lblSjsz = nullptr;
    QLabel *m_lblDd = nullptr;
    QLabel *m_lblDdsz = nullptr;
    QLabel *m_lblHb = nullptr;
    QLabel *m_lblHbsz = nullptr;
    QLabel *m_lblYyfw = nullptr;
    QLabel *m_lblDqjjb = nullptr;
    QLabel *m_lblDjly = nullptr;
    QPushButton *m_btnXg = nullptr;
    CloudServerCombox *m_comServer = nullptr;
    PriceCheckInputs m_inputs;
    QPointer<TQdtjyjc_Yxys> m_yxys;
};
