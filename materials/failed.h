#pragma once
#include <hostapi/ztitlemodal.h>

#include <QStringList>

class zTableModel;

// The materials a save of many materials left out, by code and name.
class Failed : public zTitleModal
{
    Q_OBJECT
public:
    Failed(const QStringList &codes, const QStringList &names, QWidget *parent = nullptr);
    zTableModel *model() const { return m_model; }

private:
    zTableModel *m_model = nullptr;
};
