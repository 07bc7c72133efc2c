#pragma once
#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/ztitlemodal.h>

#include <QList>

class QLabel;
class zTableModel;

// The cloud records behind one material's cloud price.
class VelCjyjc_CheckDetails : public zTitleModal
{
    Q_OBJECT
public:
    // `records` are the check's cloud records; those of material `key` are listed.
    VelCjyjc_CheckDetails(bool taxIncluded, QList<CloudCjyjcBean> &records, int key, QList<CloudCjyjcBean> &results,
                          double cloudPrice, double deviation, QString name, QWidget *parent = nullptr);

    zTableModel *model() const { return m_model; }
    QLabel *materialLabel() const { return m_lblMaterial; }
    QString materialName() const { return m_name; }

private:
    void fill(bool taxIncluded, const QList<CloudCjyjcBean> &records);

    zTableModel *m_model = nullptr;
    QLabel *m_lblMaterial = nullptr;
    QString m_name;
};
