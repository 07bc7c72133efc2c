#pragma once
#include <hostapi/guardsite.h>

#include <QMap>
#include <QString>
#include <QStringList>

class LtdInfo;
class QWidget;
class zTableModel;
class zTableView;

// A one-column list of price tables ("文本", key "wb") and the cloud's
// library list behind it.
class MaterialLibraryList
{
public:
    static zTableView *createView(QWidget *parent, const QString &name);
    static void setRows(zTableModel *model, const QStringList &texts);
    // Asks `server` for its libraries; on success the list shows `leading`,
    // then the libraries, and `ids` maps their names to ids.
    static bool load(const GuardSite &site, const LtdInfo *server, zTableView *view, QMap<QString, QString> &ids,
                     const QStringList &leading = {});
    // "wb" of the first selected row; null when nothing is selected.
    static QString selectedText(const zTableView *view);
    static int selectedRow(const zTableView *view);
};
