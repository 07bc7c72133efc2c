#pragma once
#include <QObject>
#include <QString>

class MainWindow;
class QAbstractItemModel;
class QMenu;

// The host's 文件 menu: new, open, save, save as, recent projects, bill list
// import and table export; asks before unsaved changes are thrown away.
class ProjectFileActions : public QObject
{
    Q_OBJECT
public:
    explicit ProjectFileActions(MainWindow *window);

    void fillMenu(QMenu *file);
    // Each returns true when done; false when cancelled or failed (the
    // failure is shown, the open project stays).
    bool newProject();
    bool openFile(const QString &path = QString());
    bool save();
    bool saveAs(const QString &path = QString());
    bool importBills(const QString &path = QString());
    bool exportTable(const QAbstractItemModel *model, const QString &caption, const QString &path = QString());
    // The materials of the last price check with their deviation from the
    // cloud price.
    bool exportMaterialCheck(const QString &path = QString());
    // True when the project may be closed: unchanged, saved, or the user let
    // the changes go.
    bool maybeSave();

private:
    void fillRecentMenu();
    bool saveTo(const QString &path);
    QString suggestedName(const QString &suffix) const;

    MainWindow *m_window;
    QMenu *m_recent = nullptr;
};
