#pragma once
#include <hostapi/ztitlemodal.h>

class LtdInfo;
class QLabel;
class QLineEdit;
class QPushButton;

// "新建清单库": asks for the new library's name and creates it on `server`.
// Accepted when the cloud created it; an unanswered request closes it too.
class TBzqdycc_Xjqdk : public zTitleModal
{
    Q_OBJECT
public:
    TBzqdycc_Xjqdk(const LtdInfo *server, QWidget *parent);

    QLineEdit *nameEdit() const { return m_editMc; }
    QPushButton *okButton() const { return m_btnQd; }
    bool created() const { return m_created; }

public slots:
    void actOk() override;

private:
    void CreateUI();

    const LtdInfo *m_server;
    QLabel *m_lblMc = nullptr;
    QLineEdit *m_editMc = nullptr;
    QPushButton *m_btnQd = nullptr;
    bool m_created = false;
};
