#pragma once
#include <hostapi/cloudzjbean.h>
#include <hostapi/guardsite.h>
#include <hostapi/ztabcontent.h>

#include <cloud/cloudrequest.h>

class QModelIndex;
class QPlainTextEdit;
class zStandardTreeNodeData;
class zTreeModel;
class zTreeView;

// The detail tabs under a list of cloud bills: features or work content,
// the composition with its "查看" fee button, and the bill's project
// information from the cloud. Shared by the unit-price check browser and the
// current-bill pricing browser; failures are reported under the owner.
class CloudBillDetails : public zTabContent
{
    Q_OBJECT
public:
    CloudBillDetails(const GuardSite &site, QWidget *parent);

    void setFirstTabName(const QString &name);
    // Shows `bill`, its first tab by the current bill's `kind`, then asks the
    // cloud for the project information with `projectInfoRequest`.
    void showBill(const CloudZjBean &bill, const QString &kind, const CloudRequest &projectInfoRequest);
    // Texts and composition given by the host, without a cloud bill.
    void showTexts(const QString &projectInfo, const QString &first, const zStandardTreeNodeData *composition);
    void clear();

    QString firstTabText() const;
    QString projectInfoText() const;
    zTreeModel *compositionModel() const { return m_model; }
    zTreeView *compositionView() const { return m_tree; }

private:
    void showFees(const QModelIndex &index);

    GuardSite m_site;
    QPlainTextEdit *m_first = nullptr;
    zTreeModel *m_model = nullptr;
    zTreeView *m_tree = nullptr;
    QPlainTextEdit *m_info = nullptr;
    CloudZjBean m_bill;
    bool m_hasBill = false;
};
