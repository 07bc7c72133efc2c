#pragma once
#include "materialpricetables.h"

#include <cloud/cloudserverowner.h>

#include <hostapi/gljbean.h>
#include <hostapi/ztitlemodal.h>

#include <QMap>
#include <QPointer>
#include <QString>

class CloudServerCombox;
class LtdInfo;
class QLabel;
class QRadioButton;
class TCloudCLSaveDialog_Xjbc;
class zTableView;

// Stores material prices in a price table, locally or in a cloud library.
// One material goes into a local table here; many materials, and every
// cloud save, are handed to the host by signal with the chosen table.
class CloudCLSaveDialogm : public zTitleModal, public CloudServerOwner
{
    Q_OBJECT
public:
    CloudCLSaveDialogm(int tax, QWidget *parent = nullptr);

    void SomeData(int count, QString text);
    void StoreData(GljBean *material);

    // Cleared by the host before the run when many materials are saved:
    // the first makes a local confirm emit MultipleData, the second
    // DykMultipleData.
    bool singleMaterial = true;
    bool singleDykMaterial = true;

    zTableView *localList() const { return m_gdTable; }
    zTableView *cloudList() const { return m_gdTableCloud; }
    QRadioButton *localRadio() const { return m_rbLocal; }
    QRadioButton *cloudRadio() const { return m_rbCloud; }
    QLabel *objectLabel() const { return m_lblObject; }
    QLabel *countLabel() const { return m_lblCount; }
    QString defaultTableLabel() const { return m_defaultLabel; }
    int matchCount() const { return m_matchCount; }

signals:
    void ConfirmData();
    void signalCheckData(LtdInfo *server, QString &libraryId);
    void MultipleData(const QString &tableId, const QString &tableLyid);
    void DykMultipleData(const QString &tableId, const QString &tableLyid);

private slots:
    void NewTable();
    void Local();
    void Cloud();
    void ShowMenu(const QPoint &pos);
    void SlotDelete();
    void Rename();
    void Confirm();
    void Cancel();
    void slotRequestJbData();

private:
    void CreateUI();
    QLayout *placeRow();
    bool isCloud() const;
    void listLocalTables();
    void confirmLocal();
    void confirmCloud();
    bool permitted();
    // The name typed into the name dialog under `caption`; null when cancelled.
    QString askName(const QString &caption);
    void selectCloudRow(const QString &name);

    int m_tax;
    int m_matchCount = 0;
    int m_localRows = 0;
    int m_currentRow = -1;
    bool m_cloudStarted = false;
    GljBean m_material;
    QString m_presetLabel;
    QString m_defaultLabel;
    QMap<QString, QString> m_libraryIds;
    QLabel *m_lblObject = nullptr;
    QLabel *m_lblCount = nullptr;
    QRadioButton *m_rbLocal = nullptr;
    QRadioButton *m_rbCloud = nullptr;
    CloudServerCombox *m_comServer = nullptr;
    zTableView *m_gdTable = nullptr;
    zTableView *m_gdTableCloud = nullptr;
    QPointer<TCloudCLSaveDialog_Xjbc> m_xjbc;
};
