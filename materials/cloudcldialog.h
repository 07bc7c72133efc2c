#pragma once
#include <hostapi/ztitlemodal.h>

#include <QPointer>

class QComboBox;
class TCloudCLDialog_Yxys;

// The earlier form of the material price check set-up: fixed sample
// factors and three fixed sources; it sends no request.
class CloudCLDialog : public zTitleModal
{
    Q_OBJECT
public:
    explicit CloudCLDialog(QWidget *parent = nullptr);
    QComboBox *sourceBox() const { return m_comSource; }

public slots:
    void Modify();

private:
    QComboBox *m_comSource = nullptr;
    QPointer<TCloudCLDialog_Yxys> m_yxys;
};
