#pragma once
#include "storagetargetlayout.h"

#include <hostapi/ztitlemodal.h>

class QAbstractButton;

// Base of the feature and scheme storage dialogs: shows how many bills are
// saved, asks for the tier and reports it with signalCheckData.
class YccTargetDialog : public zTitleModal
{
    Q_OBJECT
public:
    void setNum(int count);
    const StorageTargetLayout &form() const { return m_form; }

public slots:
    // Reports the tier, then closes as accepted.
    void actOk() override;
    // Shows the enterprise box while "企业云" is clicked.
    void getChecked(QAbstractButton *button);

signals:
    // 1 "企业云", otherwise 0.
    void signalCheckData(int target);

protected:
    YccTargetDialog(const QString &caption, QWidget *parent);

private:
    StorageTargetLayout m_form;
};
