#pragma once
#include <hostapi/ztitlemodal.h>

class QLineEdit;

// The deviation rate above which deviations are shown prominently.
class TSztcxzpcl : public zTitleModal
{
    Q_OBJECT
public:
    explicit TSztcxzpcl(QWidget *parent = nullptr);

    // "0" for an empty text.
    void setPcl(const QString &rate);
    QLineEdit *rateEdit() const { return m_edtPcl; }

public slots:
    void actOk() override;

signals:
    void setPclMark(QString rate);

private:
    void slotTextEdited(const QString &text);

    QLineEdit *m_edtPcl = nullptr;
};
