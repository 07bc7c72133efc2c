#include "hosttestcase.h"

#include <billimportdialog.h>
#include <billlistimport.h>
#include <billtreemodel.h>
#include <compositionwriter.h>
#include <hostfiledialogs.h>
#include <hoststate.h>
#include <mainwindow.h>
#include <materialtablemodel.h>
#include <projectdocument.h>
#include <projectfileactions.h>
#include <settingsedit.h>
#include <settingspanel.h>
#include <spreadsheetreader.h>
#include <tableexport.h>

#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/projectsettinghelper.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QJsonObject>
#include <QTabWidget>
#include <QTextCodec>
#include <QUndoStack>
#include <QtTest>

#include <xlsxwriter.h>

namespace {
const QByteArray kSheetCsv = "清单与计价表\r\n"
                             "序号,项目编码,项目名称,项目特征描述,计量单位,工程量\r\n"
                             ",,电气工程,,,\r\n"
                             "1,030409001001,电力电缆,\"1.规格：YJV-4*50\n2.敷设：桥架\",m,\"1,234.5\"\r\n"
                             ",,,,,\r\n"
                             "2,030412001001,配管,\"1.材质：JDG, 暗敷\",m,88\r\n";

QString writeFile(const QString &dir, const QString &name, const QByteArray &bytes)
{
    const QString path = dir + QLatin1Char('/') + name;
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    return path;
}

// The same sheet as a workbook: shared strings, a number cell, a formula
// result stored as a string.
QString writeSheetXlsx(const QString &dir)
{
    const QString path = dir + QStringLiteral("/清单.xlsx");
    lxw_workbook *book = workbook_new(path.toUtf8().constData());
    lxw_worksheet *sheet = workbook_add_worksheet(book, nullptr);
    const QList<QStringList> rows = [] {
        QList<QStringList> r;
        SpreadsheetReader::readCsv(kSheetCsv, &r, nullptr);
        return r;
    }();
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < rows[r].size(); ++c) {
            QString text = rows[r][c];
            if (c == 5 && r >= 2 && !text.isEmpty())
                worksheet_write_number(sheet, r, c, text.remove(',').toDouble(), nullptr);
            else if (!text.isEmpty())
                worksheet_write_string(sheet, r, c, text.toUtf8().constData(), nullptr);
        }
    }
    workbook_close(book);
    return path;
}

QStringList billLines(const ProjectDocument &project)
{
    QStringList lines;
    for (BaseDataItem *b : project.allBills()) {
        lines << QStringList{b->text(BaseDataItem::CodeRole), b->text(BaseDataItem::NameRole),
                             b->text(BaseDataItem::FeaturesRole), b->text(BaseDataItem::UnitRole),
                             QString::number(b->data(BaseDataItem::QuantityRole).toDouble())}
                     .join('|');
    }
    return lines;
}
}

class TestProjectFiles : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<ProjectDocument> project;
    QString dir;

private slots:
    void init()
    {
        HostTestCase::init();
        dir = QDir(fx->appDir()).absolutePath();
        project = std::make_unique<ProjectDocument>();
        QVERIFY(project->loadFile(ProjectDocument::samplePath(), nullptr));
        project->seedProjectSettings();
    }
    void cleanup()
    {
        HostFileDialogs::setHandler(nullptr);
        project.reset();
        HostTestCase::cleanup();
    }

    void saveAndReopenKeepEverything_data()
    {
        QTest::addColumn<QString>("probe");
        QTest::addColumn<QString>("expected");
        QTest::newRow("bill quantity") << "quantity" << "571.47";
        QTest::newRow("quota line under a bill") << "quota" << "4-12-5|配线 管内穿线|2.5";
        QTest::newRow("fee line under a quota line") << "fee" << "人工费|36.4";
        QTest::newRow("mark colour") << "mark" << "#FFE699";
        QTest::newRow("cloud composition text") << "composition" << "[{\"debh\":\"4-12-5\"}]|#FF0000";
        QTest::newRow("exclusion mark") << "exclude" << "true";
        QTest::newRow("material price") << "material" << "16.2";
        QTest::newRow("settings") << "settings" << "2025年03月|120m";
    }
    void saveAndReopenKeepEverything()
    {
        QFETCH(QString, probe);
        BaseDataItem *bill = project->allBills().first();
        BaseDataItem *quota = bill->appendChild(std::make_unique<BaseDataItem>(9001, BaseDataItem::QuotaKind));
        quota->setData(BaseDataItem::CodeRole, "4-12-5");
        quota->setData(BaseDataItem::NameRole, "配线 管内穿线");
        quota->setData(BaseDataItem::QuantityRole, 2.5);
        BaseDataItem *fee = quota->appendChild(std::make_unique<BaseDataItem>(9002, 7));
        fee->setData(BaseDataItem::NameRole, "人工费");
        fee->setData(2001, 36.4);
        bill->setData(BaseDataItem::MarkColorRole, "#FFE699");
        bill->setData(BaseDataItem::CompositionRole, "[{\"debh\":\"4-12-5\"}]");
        bill->setData(BaseDataItem::FontColorRole, "#FF0000");
        GljBean m = *project->materialTable()->materials().first();
        m.SetTj(16.2);
        project->materialTable()->updateMaterial(project->materialTable()->materials().first(), m);
        QVERIFY(SettingsEdit::apply(SettingsEdit::Time, "2025年03月"));
        QVERIFY(SettingsEdit::apply(SettingsEdit::Altitude, "120m"));
        const QString path = dir + "/p.velora";
        QVERIFY(project->saveFile(path, nullptr));
        ProjectDocument reopened;
        QVERIFY(reopened.loadFile(path, nullptr));
        QCOMPARE(reopened.toJson(), project->toJson());
        BaseDataItem *b = reopened.allBills().first();
        const BaseDataItem *q = b->child(0);
        const QHash<QString, QString> seen{
            {"quantity", b->text(BaseDataItem::QuantityRole)},
            {"quota", QStringList{q->text(BaseDataItem::CodeRole), q->text(BaseDataItem::NameRole),
                                  q->text(BaseDataItem::QuantityRole)}.join('|')},
            {"fee", q->child(0)->text(BaseDataItem::NameRole) + '|' + q->child(0)->text(2001)},
            {"mark", b->text(BaseDataItem::MarkColorRole)},
            {"composition", b->text(BaseDataItem::CompositionRole) + '|' + b->text(BaseDataItem::FontColorRole)},
            {"exclude", reopened.allBills().last()->IsExcludeInChain() ? "true" : "false"},
            {"material", QString::number(reopened.materialTable()->materials().first()->GetTj())},
            {"settings", reopened.savedSettings().time + '|' + reopened.savedSettings().altitude},
        };
        QTEST(seen.value(probe), "expected");
    }

    void damagedFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        const QByteArray head = "{\"format\":\"velora-project\",\"version\":1,";
        QTest::newRow("not JSON") << QByteArray("PK\x03\x04") << "工程文件已损坏：illegal value（第 1 字节）";
        QTest::newRow("truncated") << head + "\"tables\":[{\"items\":[" << "工程文件已损坏：unterminated array（第 59 字节）";
        QTest::newRow("foreign") << QByteArray("{\"format\":\"sheet\",\"tables\":[]}") << "这不是Velora工程文件";
        QTest::newRow("unmarked without tables") << QByteArray("{\"name\":\"x\"}") << "这不是Velora工程文件";
        QTest::newRow("unmarked, damaged table") << QByteArray("{\"tables\":[1]}") << "工程文件的计价表已损坏";
        QTest::newRow("array") << QByteArray("[1]") << "这不是Velora工程文件";
        QTest::newRow("newer version") << QByteArray("{\"format\":\"velora-project\",\"version\":2}")
                                       << "不支持的工程文件版本：2（本程序可打开版本 1）";
        QTest::newRow("no version") << QByteArray("{\"format\":\"velora-project\"}") << "不支持的工程文件版本：（本程序可打开版本 1）";
        QTest::newRow("no tables") << head + "\"tables\":[]}" << "工程文件没有计价表";
        QTest::newRow("table without items") << head + "\"tables\":[{\"name\":\"x\"}]}" << "工程文件的计价表已损坏";
        QTest::newRow("materials not a list") << head + "\"tables\":[{\"items\":[]}],\"materials\":{}}"
                                              << "工程文件的人材机表已损坏";
    }
    void damagedFilesAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        MainWindow window(project.get());
        const QByteArray before = project->toJson();
        const QString path = writeFile(dir, "bad.velora", bytes);
        HostFileDialogs::setHandler([&](const HostFileDialogs::Request &r) {
            return r.mode == HostFileDialogs::Open ? path : QString();
        });
        QVERIFY(!window.fileActions()->openFile());
        QCOMPARE(fx->messageTexts(), QStringList{"无法打开“bad.velora”：" + message});
        QCOMPARE(project->toJson(), before);
        QCOMPARE(window.windowTitle(), QStringLiteral("Velora — 武汉某办公楼安装工程[*]"));
    }

    void importSheets_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("csv");
        const QByteArray gbk = QTextCodec::codecForName("GB18030")->fromUnicode(QString::fromUtf8(kSheetCsv));
        QTest::newRow("csv") << "清单.csv" << QByteArray("\xEF\xBB\xBF" + kSheetCsv);
        QTest::newRow("csv in GB18030") << "清单.csv" << gbk;
        QTest::newRow("xlsx") << "清单.xlsx" << QByteArray();
    }
    void importSheets()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, csv);
        const QString path = csv.isEmpty() ? writeSheetXlsx(dir) : writeFile(dir, file, csv);
        QList<QStringList> rows;
        QString error;
        QVERIFY2(SpreadsheetReader::read(path, &rows, &error), qPrintable(error));
        const BillListImport::Mapping m = BillListImport::guess(rows);
        QCOMPARE(m.headerRow, 1);
        QCOMPARE((std::vector<int>(m.columns.begin(), m.columns.end())), (std::vector<int>{1, 2, 3, 4, 5}));
        MainWindow window(project.get());
        fx->answerNextModal([](QDialog *d) {
            auto *dialog = static_cast<BillImportDialog *>(d);
            dialog->fieldCombo(BillListImport::Unit)->setCurrentIndex(0);  // （不导入）
            return int(QDialog::Accepted);
        });
        QVERIFY(window.fileActions()->importBills(path));
        QCOMPARE(billLines(*project), (QStringList{"030409001001|电力电缆|1.规格：YJV-4*50\n2.敷设：桥架||1234.5",
                                                   "030412001001|配管|1.材质：JDG, 暗敷||88"}));
        QCOMPARE(project->allBills().first()->text(BaseDataItem::KindRole), QStringLiteral("GB24"));
        const BaseDataItem *section = project->billTable()->rootItem()->child(0);
        QCOMPARE(section->GetKind(), int(BaseDataItem::SectionKind));
        QCOMPARE(section->text(BaseDataItem::NameRole) + QString::number(section->childCount()), QStringLiteral("电气工程2"));
        QCOMPARE(window.windowTitle(), QStringLiteral("Velora — 清单[*]"));
        QVERIFY(window.isWindowModified());
    }

    void badSheetsAreRefused_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        QTest::newRow("quantity not a number") << "a.csv" << QByteArray("项目编码,项目名称,工程量\nX1,甲,abc\n")
                                               << "第 2 行的工程量“abc”不是数字";
        QTest::newRow("no bills") << "a.csv" << QByteArray("项目编码,项目名称\n") << "表格中没有清单";
        QTest::newRow("open quote") << "a.csv" << QByteArray("a,\"b\n") << "CSV 文件格式错误：error parsing data while strict checking enabled";
        QTest::newRow("not a workbook") << "a.xlsx" << QByteArray("plain text") << "a.xlsx 不是有效的 .xlsx 工作簿";
        QTest::newRow("other type") << "a.txt" << QByteArray("x") << "只能导入 .xlsx 或 .csv 文件";
    }
    void badSheetsAreRefused()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        MainWindow window(project.get());
        const QByteArray before = project->toJson();
        fx->answerNextModal([](QDialog *) { return int(QDialog::Accepted); });
        QVERIFY(!window.fileActions()->importBills(writeFile(dir, file, bytes)));
        QCOMPARE(fx->messageTexts(), QStringList{message});
        QCOMPARE(project->toJson(), before);
    }

    void exportSmallProject()
    {
        ProjectDocument small = ProjectDocument::blank("小工程");
        BaseDataItem *bill = small.billTable()->rootItem()->appendChild(std::make_unique<BaseDataItem>(1));
        bill->setData(BaseDataItem::CodeRole, "010101001001");
        bill->setData(BaseDataItem::NameRole, "平整场地");
        bill->setData(BaseDataItem::FeaturesRole, "1.土类别：\"三类\"");
        bill->setData(BaseDataItem::UnitRole, "m2");
        bill->setData(BaseDataItem::QuantityRole, 1234.5);
        bill->setData(BaseDataItem::UnitPriceRole, 3.2);
        BillTreeModel model(small.billTable());
        QAbstractItemModelTester tester(&model);
        QVERIFY(TableExport::write(&model, dir + "/b.csv", nullptr));
        QFile csv(dir + "/b.csv");
        QVERIFY(csv.open(QIODevice::ReadOnly));
        const QByteArray bytes = csv.readAll();
        QVERIFY(bytes.startsWith("\xEF\xBB\xBF"));
        QCOMPARE(QString::fromUtf8(bytes.mid(3)),
                 QStringLiteral("\"项目编码\",\"项目名称\",\"单位\",\"项目特征\",\"工作内容\",\"工程量\",\"综合单价\"\r\n"
                                "\"010101001001\",\"平整场地\",\"m2\",\"1.土类别：\"\"三类\"\"\",\"\",\"1234.5\",\"3.20\"\r\n"));
        QVERIFY(TableExport::write(&model, dir + "/b.xlsx", nullptr));
        QList<QStringList> rows;
        QVERIFY(SpreadsheetReader::read(dir + "/b.xlsx", &rows, nullptr));
        QCOMPARE(rows.value(1), (QStringList{"010101001001", "平整场地", "m2", "1.土类别：\"三类\"", "", "1234.5", "3.2"}));
        QString error;
        QVERIFY(!TableExport::write(&model, dir + "/missing/b.csv", &error));
        QVERIFY(error.startsWith("无法写入 " + dir + "/missing/b.csv："));
    }

    void exportMaterialCheckResults()
    {
        MainWindow window(project.get());
        QVERIFY(!window.fileActions()->exportMaterialCheck(dir + "/c.csv"));
        QCOMPARE(fx->messageTexts(), QStringList{"尚未进行材料价格检查，没有可导出的结果"});
        CloudCjyjcBean checked;
        checked.setGuid(2);
        checked.setYdj(30.0);
        checked.setChecked(true);
        static_cast<MaterialTableModel *>(window.materialModel())->setCheckResults({checked});
        QVERIFY(window.fileActions()->exportMaterialCheck(dir + "/c.csv"));
        QList<QStringList> rows;
        QVERIFY(SpreadsheetReader::read(dir + "/c.csv", &rows, nullptr));
        QCOMPARE(rows, (QList<QStringList>{{"编码", "名称", "规格型号", "单位", "数量", "调价", "偏差率(%)"},
                                           {"01002", "镀锌钢管", "DN50", "m", "728.889", "35.19", "17.30"}}));
    }

    void editsAreUndoSteps_data()
    {
        QTest::addColumn<int>("target");  // 0 bill column, 1 material price, 2 setting
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("shown");
        QTest::newRow("quantity") << 0 << int(BillTreeModel::QuantityColumn) << "12.5" << "修改工程量" << "12.5";
        QTest::newRow("unit price") << 0 << int(BillTreeModel::PriceColumn) << "1,000" << "修改综合单价" << "1000.00";
        QTest::newRow("features") << 0 << int(BillTreeModel::FeaturesColumn) << "1.新特征" << "修改项目特征" << "1.新特征";
        QTest::newRow("work content") << 0 << int(BillTreeModel::WorkContentColumn) << "安装" << "修改工作内容" << "安装";
        QTest::newRow("quantity not a number") << 0 << int(BillTreeModel::QuantityColumn) << "x" << "" << "571.47";
        QTest::newRow("code is not edited") << 0 << int(BillTreeModel::CodeColumn) << "1" << "" << "030412004001";
        QTest::newRow("material price") << 1 << int(MaterialTableModel::PriceColumn) << "17" << "修改材料价格" << "17.00";
        QTest::newRow("material code") << 1 << int(MaterialTableModel::CodeColumn) << "9" << "" << "01001";
        QTest::newRow("place") << 2 << int(SettingsEdit::Place) << "湖北省武汉市江汉区（420103）" << "" << "湖北省武汉市江汉区（420103）";
        QTest::newRow("tax mode") << 2 << int(SettingsEdit::TaxMode) << "简易计税" << "修改工程设置" << "简易计税";
    }
    void editsAreUndoSteps()
    {
        QFETCH(int, target);
        QFETCH(int, column);
        QFETCH(QString, value);
        QFETCH(QString, caption);
        MainWindow window(project.get());
        auto *bills = static_cast<BillTreeModel *>(window.currentBillModel());
        QAbstractItemModelTester tester(bills);
        const QModelIndex cell = target == 0 ? bills->indexOf(project->allBills().first(), column)
                                             : window.materialModel()->index(0, column);
        auto read = [&] {
            return target == 2 ? window.settingsPanel()->valueText(column) : cell.data().toString();
        };
        const QString before = read();
        const bool changed = target == 2 ? SettingsEdit::apply(column, value)
                                         : const_cast<QAbstractItemModel *>(cell.model())->setData(cell, value);
        QCOMPARE(changed, !caption.isEmpty());
        QTEST(read(), "shown");
        QCOMPARE(window.undoStack()->count(), caption.isEmpty() ? 0 : 1);
        QCOMPARE(window.undoStack()->undoText(), caption);
        window.undoStack()->undo();
        QCOMPARE(read(), before);
    }

    void closingAsksFirst_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("closed");
        QTest::newRow("保存, file chooser cancelled") << 0 << false;
        QTest::newRow("不保存") << 1 << true;
        QTest::newRow("取消") << 2 << false;
    }
    void closingAsksFirst()
    {
        QFETCH(int, answer);
        MainWindow window(project.get());
        window.show();
        HostFileDialogs::setHandler([](const HostFileDialogs::Request &) { return QString(); });
        QVERIFY(window.currentBillModel()->setData(window.currentBillModel()->index(0, 5, window.currentBillModel()->index(0, 0)), "3"));
        fx->answerNextMessage(answer);
        QTEST(window.close(), "closed");
        QCOMPARE(fx->messageTexts(), QStringList{"工程“武汉某办公楼安装工程”已修改，是否保存？"});
    }

    void importPriceSaveReopen()
    {
        MainWindow window(project.get());
        const QString sheet = writeFile(dir, "清单.csv", kSheetCsv);
        fx->answerNextModal([](QDialog *) { return int(QDialog::Accepted); });
        QVERIFY(window.fileActions()->importBills(sheet));
        CompositionWriter(*project).applyOne(project->allBills().first(), QJsonObject{{"zhdj", 321.5}}, false);
        window.lowerTabs()->setCurrentIndex(1);
        const QString saved = dir + "/导入.velora";
        HostFileDialogs::setHandler([&](const HostFileDialogs::Request &r) {
            return r.mode == HostFileDialogs::Save ? dir + "/导入" : saved;
        });
        // Opening over unsaved work asks first; 取消 keeps it.
        fx->answerNextMessage(2);
        QVERIFY(!window.fileActions()->openFile(saved));
        QCOMPARE(fx->messageTexts(), QStringList{"工程“清单”已修改，是否保存？"});
        fx->answerNextMessage(0);
        QVERIFY(window.fileActions()->newProject());
        QCOMPARE(window.windowTitle(), QStringLiteral("Velora — 新建工程[*]"));
        QVERIFY(!window.isWindowModified());
        QVERIFY(window.fileActions()->openFile());
        QCOMPARE(window.windowTitle(), QStringLiteral("Velora — 导入.velora[*]"));
        QCOMPARE(HostState::recentFiles(), QStringList{saved});
        QCOMPARE(project->allBills().first()->data(BaseDataItem::UnitPriceRole).toDouble(), 321.5);
        QCOMPARE(project->allBills().first()->text(BaseDataItem::FontColorRole), CompositionWriter::markColor());
        QCOMPARE(billLines(*project).size(), 2);
        window.close();
        MainWindow next(project.get());
        next.restoreLayout();
        QCOMPARE(next.lowerTabs()->currentIndex(), 1);
        QCOMPARE(HostState::open()->value("Files/last").toString(), saved);
        bool ctrlY = false;
        for (QAction *a : next.findChildren<QAction *>())
            ctrlY = ctrlY || (a->text().startsWith("重做") && a->shortcuts().contains(QKeySequence("Ctrl+Y")));
        QVERIFY(ctrlY);
    }
};

QTEST_MAIN(TestProjectFiles)
#include "tst_projectfiles.moc"
