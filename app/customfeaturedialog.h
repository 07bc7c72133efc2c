#pragma once
#include <hostapi/ztitlemodal.h>

class BaseDataItem;
class QTextEdit;

// The host's window for adding a custom description line to the current bill.
class CustomFeatureDialog : public zTitleModal
{
    Q_OBJECT
public:
    CustomFeatureDialog(const BaseDataItem *bill, QWidget *parent = nullptr);

    QString text() const;
    QTextEdit *edit() const { return m_edit; }

private:
    QTextEdit *m_edit = nullptr;
};
