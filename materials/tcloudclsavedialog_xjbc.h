#pragma once
#include <hostapi/ztitlemodal.h>

class QLineEdit;

// Asks for the name of a price table (new or renamed). A cancelled prompt
// yields a null name, so nothing is created or renamed.
class TCloudCLSaveDialog_Xjbc : public zTitleModal
{
    Q_OBJECT
public:
    explicit TCloudCLSaveDialog_Xjbc(QWidget *parent = nullptr);

    void SetWidgetName(const QString &caption);
    QLineEdit *getEdtJbmc() const { return m_edtJbmc; }
    // The trimmed name when "确定" closed the dialog, else a null string.
    QString slotData() const;

public slots:
    void actOk() override;
    void actCancel() override;

private:
    QLineEdit *m_edtJbmc = nullptr;
    bool m_accepted = false;
};
