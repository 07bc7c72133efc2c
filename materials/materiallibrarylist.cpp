#include "materiallibrarylist.h"
#include "materiallibraryrequests.h"
#include "materialsaverules.h"

#include <cloud/cloudexchange.h>

#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QHeaderView>
#include <QItemSelectionModel>

zTableView *MaterialLibraryList::createView(QWidget *parent, const QString &name)
{
    auto *model = new zTableModel(parent);
    model->addColumn(QStringLiteral("文本"), QStringLiteral("wb"), 300);
    auto *view = new zTableView(parent);
    view->setObjectName(name);
    view->setModel(model);
    view->horizontalHeader()->setStretchLastSection(true);
    return view;
}

void MaterialLibraryList::setRows(zTableModel *model, const QStringList &texts)
{
    model->clearRows();
    for (const QString &text : texts) {
        model->addRow();
        model->appendCell(QStringLiteral("wb"), text);
    }
}

bool MaterialLibraryList::load(const GuardSite &site, const LtdInfo *server, zTableView *view,
                               QMap<QString, QString> &ids, const QStringList &leading)
{
    ids.clear();
    QStringList texts = leading;
    setRows(view->tableModel(), texts);
    const auto reply = CloudExchange(site).call(MaterialLibraryRequests::list(server));
    if (!reply)
        return false;
    for (const auto &library : MaterialSaveRules::libraries(reply->data())) {
        texts << library.first;
        ids.insert(library.first, library.second);
    }
    setRows(view->tableModel(), texts);
    return true;
}

QString MaterialLibraryList::selectedText(const zTableView *view)
{
    const int row = selectedRow(view);
    return row < 0 ? QString() : view->tableModel()->cellValue(row, QStringLiteral("wb")).toString();
}

int MaterialLibraryList::selectedRow(const zTableView *view)
{
    const QModelIndexList rows = view->selectionModel() ? view->selectionModel()->selectedRows() : QModelIndexList();
    return rows.isEmpty() ? -1 : rows.first().row();
}
