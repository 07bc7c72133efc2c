#pragma once
#include "hostcontext.h"

#include <QHash>
#include <QMainWindow>

#include <memory>

class BillDetailPanel;
class BillTreeModel;
class ElidedLabel;
class HostCloudWaiter;
class JJBTableBase;
class MaterialTableModel;
class ProjectDocument;
class ProjectFileActions;
class QAbstractItemModel;
class QAction;
class QSplitter;
class QLabel;
class QTabWidget;
class QTreeView;
class QUndoStack;
class SettingsPanel;

// The host's main window on one unit project: the bill trees of its pricing
// tables, its materials and project settings; a menu entry per module
// function; Undo/Redo over the host undo stack; the cloud login state.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(ProjectDocument *project, QWidget *parent = nullptr);
    ~MainWindow() override;

    QUndoStack *undoStack() const { return m_undo; }
    HostContext &context() { return m_context; }
    QAction *entryAction(const QString &id) const { return m_entryActions.value(id); }
    QString loginStateText() const;
    void setChannelText(const QString &text);
    QTreeView *billView(int index) const;
    // Opens the module function `id` on the current bill.
    QWidget *openEntry(const QString &id);
    void selectBill(BaseDataItem *bill);
    BillDetailPanel *detailPanel() const { return m_detail; }

    ProjectDocument *project() const { return m_project; }
    ProjectFileActions *fileActions() const { return m_files; }
    // Puts `next` in place of the open project: the windows on the old one
    // close, the undo history goes; `modified` marks a project not yet saved.
    void replaceProject(ProjectDocument &&next, bool modified);
    // The file name of the project, or its name while it has no file.
    QString documentTitle() const;
    void updateTitle();
    QAbstractItemModel *currentBillModel() const;
    QAbstractItemModel *materialModel() const;
    QTabWidget *lowerTabs() const { return m_lowerTabs; }
    SettingsPanel *settingsPanel() const { return m_settings; }
    // Geometry, splitter sizes and active tabs as the last run left them.
    void restoreLayout();

public slots:
    void refreshLoginState();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void saveLayout() const;
    void selectFirstBill();
    void buildCentral();
    void buildMenus();
    void buildModuleMenu();
    void buildStatusBar();
    void followLoginBroker();
    void followCloudWaits();
    void showChannelState();
    bool cloudAnswers();
    void login();
    void logout();
    void currentRowChanged(BillTreeModel *model, const QModelIndex &index);
    QList<BaseDataItem *> selectedBills() const;
    void billTabChanged(int tab);
    void showCurrent(BaseDataItem *bill, JJBTableBase *table);

    ProjectDocument *m_project;
    QUndoStack *m_undo = nullptr;
    HostContext m_context;
    ProjectFileActions *m_files = nullptr;
    QSplitter *m_vertical = nullptr;
    QSplitter *m_upper = nullptr;
    QTabWidget *m_lowerTabs = nullptr;
    QTabWidget *m_billTabs = nullptr;
    QList<QTreeView *> m_billViews;
    QList<BillTreeModel *> m_billModels;
    MaterialTableModel *m_materials = nullptr;
    SettingsPanel *m_settings = nullptr;
    BillDetailPanel *m_detail = nullptr;
    ElidedLabel *m_loginLabel = nullptr;
    ElidedLabel *m_channelLabel = nullptr;
    QAction *m_loginAction = nullptr;
    QAction *m_logoutAction = nullptr;
    QHash<QString, QAction *> m_entryActions;
    QString m_channelText;
    std::shared_ptr<HostCloudWaiter> m_waiter;
};
