#include "projectfileactions.h"
#include "billimportdialog.h"
#include "billlistimport.h"
#include "hostfiledialogs.h"
#include "hoststate.h"
#include "mainwindow.h"
#include "materialtablemodel.h"
#include "projectdocument.h"
#include "spreadsheetreader.h"
#include "tableexport.h"

#include <hostapi/childdialog.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/messagebox.h>
#include <hostapi/projectsettinghelper.h>

#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QStandardItemModel>
#include <QUndoStack>

namespace {
const QString kProjectFilter = QStringLiteral("Velora工程 (*.velora);;所有文件 (*)");
const QString kSheetFilter = QStringLiteral("清单表格 (*.xlsx *.csv)");
const QString kExportFilter = QStringLiteral("Excel 工作簿 (*.xlsx);;CSV 文件 (*.csv)");
}

ProjectFileActions::ProjectFileActions(MainWindow *window) : QObject(window), m_window(window) {}

void ProjectFileActions::fillMenu(QMenu *file)
{
    auto add = [file](const QString &text, const QString &name, const QKeySequence &key, auto slot) {
        QAction *action = file->addAction(text, slot);
        action->setObjectName(name);
        action->setShortcut(key);
        return action;
    };
    add(QStringLiteral("新建(&N)"), QStringLiteral("actNew"), QKeySequence::New, [this] { newProject(); });
    add(QStringLiteral("打开(&O)…"), QStringLiteral("actOpen"), QKeySequence::Open, [this] { openFile(); });
    add(QStringLiteral("保存(&S)"), QStringLiteral("actSave"), QKeySequence::Save, [this] { save(); });
    add(QStringLiteral("另存为(&A)…"), QStringLiteral("actSaveAs"), QKeySequence::SaveAs, [this] { saveAs(); });
    m_recent = file->addMenu(QStringLiteral("最近的工程(&R)"));
    connect(m_recent, &QMenu::aboutToShow, this, &ProjectFileActions::fillRecentMenu);
    file->addSeparator();
    add(QStringLiteral("导入清单(&I)…"), QStringLiteral("actImportBills"), QKeySequence(), [this] { importBills(); });
    add(QStringLiteral("导出清单(&E)…"), QStringLiteral("actExportBills"), QKeySequence(), [this] {
        exportTable(m_window->currentBillModel(), QStringLiteral("导出清单"));
    });
    add(QStringLiteral("导出人材机(&M)…"), QStringLiteral("actExportMaterials"), QKeySequence(), [this] {
        exportTable(m_window->materialModel(), QStringLiteral("导出人材机汇总"));
    });
    add(QStringLiteral("导出材料检查结果(&C)…"), QStringLiteral("actExportMaterialCheck"), QKeySequence(),
        [this] { exportMaterialCheck(); });
    file->addSeparator();
}

void ProjectFileActions::fillRecentMenu()
{
    m_recent->clear();
    const QStringList files = HostState::recentFiles();
    for (int i = 0; i < files.size(); ++i) {
        const QString path = files[i];
        m_recent->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(QDir::toNativeSeparators(path)),
                            [this, path] { openFile(path); });
    }
    if (files.isEmpty())
        m_recent->addAction(QStringLiteral("（无）"))->setEnabled(false);
}

bool ProjectFileActions::maybeSave()
{
    if (m_window->undoStack()->isClean())
        return true;
    const int answer = showMessage(QStringLiteral("Velora"),
                                   QStringLiteral("工程“%1”已修改，是否保存？").arg(m_window->documentTitle()),
                                   {QStringLiteral("保存"), QStringLiteral("不保存"), QStringLiteral("取消")}, m_window);
    if (answer == 0)
        return save();
    return answer == 1;
}

bool ProjectFileActions::newProject()
{
    if (!maybeSave())
        return false;
    m_window->replaceProject(ProjectDocument::blank(QStringLiteral("新建工程")), false);
    return true;
}

bool ProjectFileActions::openFile(const QString &given)
{
    if (!maybeSave())
        return false;
    const QString path = given.isEmpty()
                             ? HostFileDialogs::openFileName(m_window, QStringLiteral("打开工程"), kProjectFilter)
                             : given;
    if (path.isEmpty())
        return false;
    ProjectDocument next;
    QString error;
    if (!next.loadFile(path, &error)) {
        showMessageBox(QStringLiteral("无法打开“%1”：%2").arg(QFileInfo(path).fileName(), error), m_window, 3);
        if (!QFileInfo::exists(path))
            HostState::removeRecentFile(path);
        return false;
    }
    ProjectSettingHelper::SetProjectSettingsInfo(next.savedSettings());
    m_window->replaceProject(std::move(next), false);
    HostState::addRecentFile(m_window->project()->filePath());
    return true;
}

bool ProjectFileActions::save()
{
    const QString path = m_window->project()->filePath();
    return path.isEmpty() ? saveAs() : saveTo(path);
}

bool ProjectFileActions::saveAs(const QString &given)
{
    QString path = given.isEmpty() ? HostFileDialogs::saveFileName(m_window, QStringLiteral("工程另存为"),
                                                                   kProjectFilter, suggestedName(QStringLiteral("velora")))
                                   : given;
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".velora");
    return saveTo(path);
}

bool ProjectFileActions::saveTo(const QString &path)
{
    QString error;
    if (!m_window->project()->saveFile(path, &error)) {
        showMessageBox(error, m_window, 3);
        return false;
    }
    m_window->undoStack()->setClean();
    m_window->updateTitle();
    HostState::addRecentFile(m_window->project()->filePath());
    return true;
}

QString ProjectFileActions::suggestedName(const QString &suffix) const
{
    const QString current = m_window->project()->filePath();
    const QString base = current.isEmpty() ? m_window->project()->name() : QFileInfo(current).completeBaseName();
    const QString dir = current.isEmpty() ? QDir::homePath() : QFileInfo(current).absolutePath();
    return QDir(dir).filePath(base + QLatin1Char('.') + suffix);
}

// The imported bills become a new project, unsaved, with the bill library
// of the project it replaces.
bool ProjectFileActions::importBills(const QString &given)
{
    if (!maybeSave())
        return false;
    const QString path = given.isEmpty()
                             ? HostFileDialogs::openFileName(m_window, QStringLiteral("导入清单"), kSheetFilter)
                             : given;
    if (path.isEmpty())
        return false;
    QList<QStringList> rows;
    QString error;
    if (!SpreadsheetReader::read(path, &rows, &error)) {
        showMessageBox(error, m_window, 3);
        return false;
    }
    BillListImport::Mapping mapping;
    auto *dialog = new BillImportDialog(QFileInfo(path).fileName(), rows, m_window);
    if (ChildDialog::run(m_window, dialog, [&](int) { mapping = dialog->mapping(); }) != QDialog::Accepted)
        return false;
    const QString qdSpec = m_window->project()->unitWork()->GetQdSpec();
    ProjectDocument next = ProjectDocument::blank(QFileInfo(path).completeBaseName());
    next.unitWork()->setQdSpec(qdSpec);
    if (BillListImport::fill(rows, mapping, qdSpec, next.billTable(), &error) < 0) {
        showMessageBox(error, m_window, 3);
        return false;
    }
    m_window->replaceProject(std::move(next), true);
    return true;
}

bool ProjectFileActions::exportTable(const QAbstractItemModel *model, const QString &caption, const QString &given)
{
    if (!model)
        return false;
    const QString path = given.isEmpty()
                             ? HostFileDialogs::saveFileName(m_window, caption, kExportFilter,
                                                             suggestedName(QStringLiteral("xlsx")))
                             : given;
    if (path.isEmpty())
        return false;
    QString error;
    if (!TableExport::write(model, path, &error)) {
        showMessageBox(error, m_window, 3);
        return false;
    }
    return true;
}

bool ProjectFileActions::exportMaterialCheck(const QString &path)
{
    auto *materials = static_cast<MaterialTableModel *>(m_window->materialModel());
    if (!materials || materials->deviations().isEmpty()) {
        showMessageBox(QStringLiteral("尚未进行材料价格检查，没有可导出的结果"), m_window);
        return false;
    }
    const int columns[] = {MaterialTableModel::CodeColumn, MaterialTableModel::NameColumn,
                           MaterialTableModel::SpecColumn, MaterialTableModel::UnitColumn,
                           MaterialTableModel::QuantityColumn, MaterialTableModel::PriceColumn};
    QStandardItemModel table;
    QStringList header;
    for (int c : columns)
        header << materials->headerData(c, Qt::Horizontal).toString();
    table.setHorizontalHeaderLabels(header << QStringLiteral("偏差率(%)"));
    for (int row = 0; row < materials->rowCount(); ++row) {
        const std::optional<double> deviation = materials->deviations().deviation(*materials->materialAt(row));
        if (!deviation)
            continue;
        QList<QStandardItem *> cells;
        for (int c : columns)
            cells << new QStandardItem(materials->index(row, c).data().toString());
        cells << new QStandardItem(QString::number(*deviation, 'f', 2));
        for (int c = 4; c < cells.size(); ++c)
            cells[c]->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table.appendRow(cells);
    }
    return exportTable(&table, QStringLiteral("导出材料检查结果"), path);
}
