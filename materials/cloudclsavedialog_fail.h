#pragma once
#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/ztitlemodal.h>

#include <QList>

class zTreeModel;

// The failure list built from check records: code from the record's model
// (规格型号), name with unit, and the red reason.
class CloudCLSaveDialog_fail : public zTitleModal
{
    Q_OBJECT
public:
    CloudCLSaveDialog_fail(QList<CloudCjyjcBean> &records, QWidget *parent = nullptr);
    zTreeModel *model() const { return m_model; }

private:
    zTreeModel *m_model = nullptr;
};
