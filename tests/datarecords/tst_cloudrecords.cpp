#include "hosttestcase.h"

#include <hostapi/datarecords.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {
QJsonObject fee(const char *bh, const char *mc)
{
    return QJsonObject{{"BH", bh}, {"MC", mc}, {"GS", "RGF+CLF+JXF"}, {"FL", "100"}, {"JE", "12.5"}, {"ZD", "ZJF"}};
}

QString text(const QJsonObject &o)
{
    return QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact));
}

// A composition as the cloud writes it: a quota with a material and a fee
// template, a calculated line without unit or quantity, a line item.
QString sampleZjnr()
{
    QJsonObject quota{{"TYPE", "DE"}, {"BH", "03-4-12"}, {"XMMC", "配电箱安装"}, {"GCL", "2"}, {"DW", "台"}, {"DJ", 312.675}, {"HJ", "625.35"}};
    quota.insert("ZhfMbMx", QJsonObject{{"MB", QJsonObject{{"ROWS", QJsonObject{{"FH", QJsonArray{fee("1", "直接费"), fee("2", "管理费")}}}}}}});
    QJsonObject material{{"TYPE", "CL"}, {"BH", "C0001"}, {"XMMC", "配电箱"}, {"GCL", "2"}, {"DW", "台"}, {"TJ", "1200"}, {"HJ", "2400"}};
    material.insert("ZhfMbMx", text(QJsonObject{{"MB", QJsonObject{{"Rows", QJsonObject{{"Row", fee("9", "材料费")}}}}}}));
    quota.insert("ITEM", QJsonArray{material, QJsonObject{{"TYPE", "ZZ"}, {"BH", "ignored"}}});
    const QJsonObject calc{{"TYPE", "JS"}, {"BH", "JS1"}, {"XMMC", "安全文明施工费"}, {"DJ", ""}, {"GCL", "9"}};
    const QJsonObject item{{"TYPE", "XP"}, {"BH", "XP1"}, {"XMMC", "调试"}, {"DW", "项"}, {"DJ", "80"}, {"HJ", "80"}};
    return text(QJsonObject{{"zjnr", QJsonArray{quota, calc, QJsonObject{{"TYPE", "QQ"}, {"BH", "Q"}}, item}}});
}

QString describe(const cloudZjnr &l)
{
    return QStringList{l.getType(), QString::number(l.getId()), QString::number(l.getParentId()), l.getIsDe() ? "de" : "-",
                       l.getDebh(), l.getDemc(), l.getGcl(), l.getDw(), l.getZhdj(), l.getZhhj()}
        .join('|');
}

QString describe(const cloudFymb &f)
{
    return QStringList{f.getFybh(), f.getFymc(), f.getJsgs(), f.getFl(), f.getJe(), f.getJjbzd()}.join('|');
}
}

class TestCloudRecords : public HostTestCase
{
    Q_OBJECT
private slots:
    void zjnrLines_data()
    {
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("fields"); // type|id|parent|de|code|name|quantity|unit|price|total
        QTest::addColumn<QStringList>("fees");
        const QString direct = "1|直接费|RGF+CLF+JXF|100|12.5|ZJF", management = "2|管理费|RGF+CLF+JXF|100|12.5|ZJF";
        // A parent comes first, its child next; unknown kinds are skipped.
        QTest::newRow("quota, price rounded") << 0 << "DE|1|-1|de|03-4-12|配电箱安装|2|台|312.68|625.35"
                                              << QStringList{direct, management};
        // A material line's price is its adjusted price; its fee template is
        // spelled "Rows"/"Row", given as JSON text, a single row object.
        QTest::newRow("material below it") << 1 << "CL|2|1|-|C0001|配电箱|2|台|1200.00|2400.00"
                                           << QStringList{"9|材料费|RGF+CLF+JXF|100|12.5|ZJF"};
        // A calculated line reads no quantity; its empty price shows "0.00".
        QTest::newRow("calculated") << 2 << "JS|3|-1|de|JS1|安全文明施工费|||0.00|" << QStringList();
        QTest::newRow("line item") << 3 << "XP|4|-1|de|XP1|调试||项|80.00|80.00" << QStringList();
    }
    void zjnrLines()
    {
        QFETCH(int, line);
        QFETCH(QString, fields);
        QFETCH(QStringList, fees);
        const QList<cloudZjnr> lines = cloudZjnr::parseList(sampleZjnr());
        QCOMPARE(lines.size(), 4);
        QCOMPARE(describe(lines[line]), fields);
        QStringList seen;
        for (const cloudFymb &f : lines[line].getFymblist())
            seen << describe(f);
        QCOMPARE(seen, fees);
        QCOMPARE(cloudZjnr::parseList(cloudZjnr::toZjnrText(lines)), lines);
    }

    void zjnrBadInput_data()
    {
        QTest::addColumn<QString>("input");
        QTest::newRow("empty") << QString();
        QTest::newRow("not json") << "{zjnr:";
        QTest::newRow("no array") << "{\"zjnr\":\"x\"}";
        QTest::newRow("no type") << "{\"zjnr\":[{\"BH\":\"1\"}]}";
    }
    void zjnrBadInput()
    {
        QFETCH(QString, input);
        QVERIFY(cloudZjnr::parseList(input).isEmpty());
    }

    void zjBeanReadsMatchReplyElementAndRoundTrips()
    {
        const QJsonObject element{{"qdbh", "030404017001"}, {"xmmc", "配电箱\n安装"}, {"jldw", "台"}, {"xmtz", "1.名称:配电箱\n2.型号:AL1"},
                                  {"gznr", "1.本体安装"}, {"zhdj", "1523.4"}, {"id", 42}, {"qdly", "2"},
                                  {"jzsj", "2024年05月"}, {"dd", "成都市"}, {"zjnr", sampleZjnr()}};
        const CloudZjBean bean(text(element));
        QVERIFY(bean.isValid());
        CloudZjBean expected;
        expected.setId(42);
        expected.setLy(2);
        expected.setXmbh("030404017001");
        expected.setXmmc("配电箱\n安装");
        expected.setDw("台");
        expected.setZhdj(1523.4);
        expected.setXmtz("1.名称:配电箱\n2.型号:AL1");
        expected.setGcnr("1.本体安装");
        expected.setJzsj("2024年05月");
        expected.setDd("成都市");
        expected.setZjnrlist(cloudZjnr::parseList(sampleZjnr()));
        QCOMPARE(bean, expected);
        QCOMPARE(bean.getZjnrlist().size(), 4);
        // The string form is one line and reads back the same.
        const QString form = bean.toString();
        QVERIFY(!form.contains('\n'));
        QCOMPARE(CloudZjBean(form), bean);
        QCOMPARE(CloudZjBean(form).toString(), form);
    }

    void zjBeanRejectsNonObject_data()
    {
        QTest::addColumn<QString>("input");
        QTest::newRow("empty") << QString();
        QTest::newRow("array") << "[1]";
        QTest::newRow("garbage") << "id=3";
    }
    void zjBeanRejectsNonObject()
    {
        QFETCH(QString, input);
        const CloudZjBean bean(input);
        QVERIFY(!bean.isValid());
        QCOMPARE(bean.getId(), 0);
        QVERIFY(bean.getZjnrlist().isEmpty());
    }

    void znytzBeanFromBothSources()
    {
        const QJsonObject e{{"xmmc", "配电箱"}, {"xmtz", "名称"}, {"gznr", "安装"}, {"guida", 1234567}, {"bzqdkmc", "GB50856-2024"}};
        const CloudZnytzBean standard = CloudZnytzBean::fromJson(e, true);
        QCOMPARE(standard.getXmid(), QStringLiteral("1234567"));
        QVERIFY(standard.getBzQd());
        QCOMPARE(standard.getQdkMc(), QStringLiteral("GB50856-2024"));
        QCOMPARE(standard.getGcnr(), QStringLiteral("安装"));
        const CloudZnytzBean project = CloudZnytzBean::fromJson(e, false);
        QVERIFY(!project.getBzQd());
        QCOMPARE(project.getQdkMc(), QString());
        QCOMPARE(CloudZnytzBean::fromJson(QJsonObject{}, false).getXmid(), QString());
    }

    void materialRecordsRoundTrip()
    {
        CloudCjyjcBean r = CloudCjyjcBean::fromJson(
            QJsonObject{{"guid", "12"}, {"ydjhs", 5.65}, {"ydjbhs", "5"}, {"clmc", "镀锌钢管"}, {"jgjzsj", "2024年03月"}});
        QCOMPARE(r.getGuid(), 12);
        QCOMPARE(r.getYdjhs(), 5.65);
        QCOMPARE(r.getYdjbhs(), 5.0);
        QCOMPARE(CloudCjyjcBean::fromJson(r.toJson()).toJson(), r.toJson());
        GljBean m;
        m.SetGuid(3);
        m.SetClmc("电力电缆");
        m.SetGgxh("YJV-4×25");
        m.SetTj(86.12345678);
        QCOMPARE(GljBean::fromJson(m.toJson()).toJson(), m.toJson());
    }
};

QTEST_MAIN(TestCloudRecords)
#include "tst_cloudrecords.moc"
