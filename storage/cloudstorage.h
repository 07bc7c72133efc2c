#pragma once
#include "storagetargetlayout.h"

#include <QDialog>

// A layout of the feature storage dialog without logic of its own: captions
// without colons and the ASCII ")" after the count.
class CloudStorage : public QDialog
{
    Q_OBJECT
public:
    explicit CloudStorage(QWidget *parent = nullptr);
    void setNum(int count) { m_form.setNum(count); }
    const StorageTargetLayout &form() const { return m_form; }

private:
    StorageTargetLayout m_form;
};
