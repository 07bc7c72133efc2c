// Every local database the module and the host use, broken under a user
// operation: the file missing, a folder in its place, the file or its folder
// read-only. The operation reports the failure the way its dialog does (an
// exception report, no message of its own), loses what the user typed and
// never crashes.
#include "hosttestcase.h"
#include "loginanswers.h"

#include <customfeaturedialog.h>
#include <featurelibraryseeder.h>
#include <featureshost.h>
#include <hostcontext.h>
#include <mainwindow.h>
#include <projectdocument.h>

#include <features/featurestore.h>
#include <features/gqdxmtzmszn.h>
#include <materials/cloudclsavedialogm.h>
#include <materials/materialpricetables.h>
#include <materials/tcloudclsavedialog_xjbc.h>

#include <hostapi/apppaths.h>
#include <hostapi/basedataitem.h>
#include <hostapi/gljbean.h>
#include <hostapi/placedictionary.h>
#include <hostapi/projectsettinghelper.h>

#include <QDir>
#include <QFile>
#include <QTextEdit>
#include <QtTest>

#include <functional>
#include <map>
#include <unistd.h>

namespace {

enum Fault { Missing, Folder, ReadOnlyFile, ReadOnlyFolder };

void breakDatabase(const QString &path, Fault fault)
{
    const QString folder = QFileInfo(path).absolutePath();
    switch (fault) {
    case Missing:
        QFile::remove(path);
        break;
    case Folder:
        QFile::remove(path);
        QDir().mkpath(path);
        break;
    case ReadOnlyFile:
        QFile(path).setPermissions(QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        break;
    case ReadOnlyFolder:
        QFile(folder).setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup
                                     | QFile::ReadOther | QFile::ExeOther);
        break;
    }
}

// The user operations on each database; each returns what the user typed or
// chose, as it stands afterwards.
const std::map<QString, std::function<QString(HostFixture &, BaseDataItem &)>> &operations()
{
    static const std::map<QString, std::function<QString(HostFixture &, BaseDataItem &)>> table{
        {"feature guide", [](HostFixture &fx, BaseDataItem &bill) {
             fx.channel().replyOk(loginanswers::serverList());
             Gqdxmtzmszn guide;
             guide.setCurrQd(&bill);
             return bill.text(BaseDataItem::FeaturesRole);
         }},
        {"custom feature line", [](HostFixture &fx, BaseDataItem &bill) {
             fx.answerNextModal([](QDialog *d) {
                 static_cast<CustomFeatureDialog *>(d)->edit()->setPlainText(QStringLiteral("1.名称：自编"));
                 return int(QDialog::Accepted);
             });
             ProjectDocument project;
             QString error;
             project.loadFile(ProjectDocument::samplePath(), &error);
             MainWindow window(&project);
             window.context().currentBill = &bill;
             window.openEntry(QStringLiteral("customfeature"));
             return bill.text(BaseDataItem::FeaturesRole);
         }},
        {"material price table", [](HostFixture &fx, BaseDataItem &) {
             GljBean material;
             material.SetClmc(QStringLiteral("PP-R给水管"));
             material.SetTj(10.24);
             fx.answerNextModal([](QDialog *d) {
                 static_cast<TCloudCLSaveDialog_Xjbc *>(d)->getEdtJbmc()->setText(QStringLiteral("新价表"));
                 static_cast<TCloudCLSaveDialog_Xjbc *>(d)->actOk();
                 return 0;
             });
             CloudCLSaveDialogm dialog(0);
             dialog.StoreData(&material);
             QMetaObject::invokeMethod(&dialog, "NewTable");
             QMetaObject::invokeMethod(&dialog, "Confirm");
             return material.GetClmc();
         }},
        {"place code", [](HostFixture &, BaseDataItem &) {
             ProjectSettingsInfo info = ProjectSettingHelper::GetProjectSettingsInfo();
             info.place = QStringLiteral("四川省成都市金牛区");
             ProjectSettingHelper::SetProjectSettingsInfo(info);
             return ProjectSettingHelper::GetProjectSettingsInfo().placeCode;
         }},
    };
    return table;
}

} // namespace

class TestSqlFaults : public HostTestCase
{
    Q_OBJECT

private slots:
    void brokenDatabase_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QString>("database");
        QTest::addColumn<int>("fault");
        QTest::addColumn<QString>("kept");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<bool>("reported");
        const QList<QPair<const char *, Fault>> faults{
            {"missing", Missing}, {"a folder in its place", Folder},
            {"read-only file", ReadOnlyFile}, {"read-only folder", ReadOnlyFolder}};
        // A writable database that is missing is made afresh and works; a
        // read-only one cannot be, nor can any database a folder stands in for.
        // An operation that only reads works on a read-only file or folder.
        struct Case
        {
            const char *operation, *database;
            bool writable, reads;
            QString state, failedState, shown, failedShown;
        };
        const QString features = QStringLiteral("1.名称：桥架配线"), pipe = QStringLiteral("PP-R给水管");
        const QList<Case> cases{
            {"feature guide", "DB_USER", true, true, features, features, "", ""},
            {"feature guide", "GB24", false, true, features, features, "", ""},
            {"custom feature line", "DB_USER", true, false, features, features, "", ""},
            {"material price table", "DB_USER", true, false, pipe, pipe, "保存成功", "当前没有价表，请创建价表"},
            {"place code", "IDTDICTMIDDLE", true, true, "510106", "", "", ""},
        };
        for (const Case &c : cases) {
            for (const auto &fault : faults) {
                const bool works = fault.second == Missing ? c.writable : fault.second != Folder && c.reads;
                const QString shown = works ? c.shown : c.failedShown;
                QTest::addRow("%s, %s: %s", c.operation, c.database, fault.first)
                    << c.operation << c.database << int(fault.second) << (works ? c.state : c.failedState)
                    << (shown.isEmpty() ? QStringList() : QStringList{shown}) << !works;
            }
        }
    }
    void brokenDatabase()
    {
        QFETCH(QString, operation);
        QFETCH(QString, database);
        QFETCH(int, fault);
        if (fault >= ReadOnlyFile && geteuid() == 0)
            QSKIP("root writes to read-only files and folders");
        FeatureLibrarySeeder::build(FeatureStore::libraryPath("GB24"), "GB24", QJsonArray());
        FeatureStore::ensureTables();
        MaterialPriceTables::ensureTables();
        PlaceDictionary::ensureDatabase();
        BaseDataItem bill(501);
        bill.setData(BaseDataItem::CodeRole, "030412004001");
        bill.setData(BaseDataItem::NameRole, "配线");
        bill.setData(BaseDataItem::KindRole, "gb24");
        bill.setData(BaseDataItem::FeaturesRole, "1.名称：桥架配线");
        const QString path = HostDatabasePath(database);
        QVERIFY2(QFileInfo(path).isFile(), qPrintable(path));
        breakDatabase(path, Fault(fault));

        const QString kept = operations().at(operation)(*fx, bill);
        QTEST(kept, "kept");
        QTEST(fx->messageTexts(), "shown");
        QTEST(!fx->exceptionReports().isEmpty(), "reported");
        QFile(QFileInfo(path).absolutePath()).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
};

QTEST_MAIN(TestSqlFaults)
#include "tst_sqlfaults.moc"
