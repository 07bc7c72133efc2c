#pragma once
#include "featuregrid.h"
#include "featurestore.h"

#include <cloud/cloudserverowner.h>

#include <hostapi/cloudparams.h>
#include <hostapi/cloudznytzbean.h>
#include <hostapi/ztitlemodal.h>

#include <QJsonObject>
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

class BaseDataItem;
class CloudReply;
class CloudSources;
class CloudWorkerRequest;

class JJBTableBase;
class LtdInfo;
class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QStackedWidget;
class QTableWidget;
class QTextEdit;
class WorkBaseObject;
class zFilterSearchBox;

// The non-modal guide for writing the item features (or the work content of
// a measure bill) of the host's current bill: lines of the local libraries
// and the user's custom lines, or features of similar cloud bills. The chosen
// text is handed to the host with Uptext inside one undo record.
class Gqdxmtzmszn : public zTitleModal, public CloudServerOwner
{
    Q_OBJECT
public:
    explicit Gqdxmtzmszn(QWidget *parent = nullptr);

    static QString windowTitle(int appType);
    // Work content instead of item features: measure-item bills.
    static bool isWorkContentItem(const BaseDataItem *item);
    // The cloud source is offered outside the "JL" and "YN" area versions.
    static bool cloudOffered(const QString &areaVersion);

    void setCurrQd(BaseDataItem *item);
    void setXmbhmc(BaseDataItem *item);
    void setCurrJjb(JJBTableBase *table);
    void setUnitWork(WorkBaseObject *unitWork);
    void setSjkm(QString sjkm);
    void setData(QString &text);
    void setItemId(QString &id);
    void setItemName(QString &name);
    void setTabData(const QString &text);
    void setXmtzData(QList<CloudZnytzBean> &results, int pageCount);
    void NotEditable(bool readOnly);
    void btnState();
    void clearYtz();
    void currQdYtzUpdata();
    void emptySearchValue();
    void initData();
    void readGcid();
    void setBtnpageEnable();
    void setCloudTableClear();
    void setconnect();
    void requestTzData();

    BaseDataItem *currentItem() const { return m_item; }
    QString customTable() const { return m_customTable; }
    QString libraryPath() const { return m_libraryPath; }
    QString specialtyTable() const { return m_specialtyTable; }
    QString fillingHint() const { return m_hint; }
    QStringList shownLines() const { return m_lines; }
    int localPage() const { return m_localPage; }
    int cloudPage() const { return m_cloudPage; }
    int cloudPageCount() const { return m_cloudPageCount; }
    QList<CloudZnytzBean> cloudResults() const { return m_results; }
    QTableWidget *localGrid() const { return m_gdTableMszn; }
    QTableWidget *cloudGrid() const { return m_gdCloudTabMszn; }
    QTextEdit *featureEdit() const { return m_edit; }
    QRadioButton *localRadio() const { return m_rbLocal; }
    QRadioButton *cloudRadio() const { return m_rbCloud; }
    CloudSources *sources() const { return m_sources; }
    QCheckBox *appCloseBox() const { return m_chkAppClose; }
    QCheckBox *skipPricedBox() const { return m_chkSkip; }
    zFilterSearchBox *searchBox() const { return m_search; }
    QList<QPushButton *> pageButtons() const;
    QPushButton *button(const QString &name) const;

signals:
    void TheCurrentListing(BaseDataItem *&item, const bool forward, bool &found);
    void Uptext(const QString &text);
    void signalDataChanged();
    void signalItemIdChanged();
    void signalItemNameChanged();
    void signalNextQd(const bool &found);
    void signalPreviousQd(const bool &found);
    void signalRequestData(LtdInfo *server, int page, QString text, int pageSize, QStringList projectIds);
    void signalRequestGcslData(LtdInfo *server, QString &id);
    void signalUpdataGcslData(int number);
    void signalUpdataTzData(int number);

public slots:
    void FirstPage();
    void PreviousPage();
    void NextPage();
    void LastPage();
    void ObtainLastRow();
    void ObtainNextRow();
    void slotBtnGrySsClicked();
    void slotUpdataTzData(int number);
    void slotUpdataGcslData(int number);
    void resetLogin();
    // The project information of the result behind the header at (row, column).
    void requestProjectInfo(int row, int column);
    void YyButton();
    void HyButton();
    void GfButton();
    void TsButton();
    void DeleteCustomLine();
    void EditCustomLine();
    void GbButton();

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void CreateUI();
    QLayout *buildHeader();
    QWidget *buildCloudPage();
    QLayout *buildPaging();
    QLayout *buildButtons();
    QPushButton *pageButton(const QString &name, const QString &disabled, const QString &normal, const QString &hover);
    void applyMode();
    void refitLater();
    void sourceChanged();
    void showLocalPage(int page, int rows);
    void localCellClicked(int row, int column);
    void selectCloudResult(int row, int column);
    void showText(const QString &caption, const QString &text);
    bool cloudPaging() const;
    void setLoading(bool shown);
    void setCustomButtonsVisible(bool visible);
    void setLocalPagingEnabled();
    void writeAppClose() const;

    BaseDataItem *m_item = nullptr;
    JJBTableBase *m_table = nullptr;
    WorkBaseObject *m_unitWork = nullptr;
    QString m_sjkm;
    QString m_data;
    QString m_itemId;
    QString m_itemName;
    QString m_libraryPath;
    QString m_customTable;
    QString m_specialtyTable;
    QString m_code;
    QString m_hint;
    QString m_selectedText;
    QStringList m_lines;
    int m_lineCount = 0;
    int m_localPage = 0;
    int m_cloudPage = 1;
    int m_cloudPageCount = 0;
    bool m_workContent = false;
    bool m_readOnly = false;
    QJsonObject m_tzReply;
    QJsonObject m_gcslReply;
    QList<CloudZnytzBean> m_results;
    CloudParams m_params;

    QLabel *m_lblItem = nullptr;
    QRadioButton *m_rbLocal = nullptr;
    QRadioButton *m_rbCloud = nullptr;
    QLabel *m_lblSource = nullptr;
    QLabel *m_lblEdit = nullptr;
    QStackedWidget *m_stack = nullptr;
    FeatureGrid *m_gdTableMszn = nullptr;
    FeatureGrid *m_gdCloudTabMszn = nullptr;
    QListWidget *m_libraries = nullptr;
    zFilterSearchBox *m_search = nullptr;
    QWidget *m_cloudBar = nullptr;
    CloudSources *m_sources = nullptr;
    QTextEdit *m_edit = nullptr;
    QCheckBox *m_chkSkip = nullptr;
    QCheckBox *m_chkAppClose = nullptr;
    QLabel *m_loading = nullptr;
    QPushButton *m_btnFirst = nullptr;
    QPushButton *m_btnPrevious = nullptr;
    QPushButton *m_btnNext = nullptr;
    QPushButton *m_btnLast = nullptr;
    QPushButton *m_btnDelete = nullptr;
    QPushButton *m_btnEdit = nullptr;
    QPushButton *m_btnYy = nullptr;
    QPushButton *m_btnHy = nullptr;
    CloudWorkerRequest *m_tzWorker = nullptr;
    CloudWorkerRequest *m_gcslWorker = nullptr;
};
