#include "hostfixture.h"

#include <hostapi/datarecords.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include <memory>

namespace {
QJsonObject fee(const char *bh, const char *mc)
{
    return QJsonObject{{"BH", QString::fromUtf8(bh)}, {"MC", QString::fromUtf8(mc)}, {"GS", "RGF+CLF+JXF"},
                       {"FL", "100"},                 {"JE", "12.5"},               {"ZD", "ZJF"}};
}

QString text(const QJsonObject &o)
{
    return QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact));
}

// A composition as the cloud writes it: a quota with a material and a fee
// template, a calculated line without unit or quantity, a line item.
QString sampleZjnr()
{
    QJsonObject quota{{"TYPE", "DE"},  {"BH", "03-4-12"}, {"XMMC", "配电箱安装"}, {"GCL", "2"},
                      {"DW", "台"},    {"DJ", 312.675},   {"HJ", "625.35"}};
    quota.insert("ZhfMbMx", QJsonObject{{"MB", QJsonObject{{"ROWS", QJsonObject{{"FH", QJsonArray{fee("1", "直接费"), fee("2", "管理费")}}}}}}});
    QJsonObject material{{"TYPE", "CL"}, {"BH", "C0001"}, {"XMMC", "配电箱"}, {"GCL", "2"}, {"DW", "台"}, {"TJ", "1200"}, {"HJ", "2400"}};
    material.insert("ZhfMbMx", text(QJsonObject{{"MB", QJsonObject{{"Rows", QJsonObject{{"Row", fee("9", "材料费")}}}}}}));
    quota.insert("ITEM", QJsonArray{material, QJsonObject{{"TYPE", "ZZ"}, {"BH", "ignored"}}});
    const QJsonObject calc{{"TYPE", "JS"}, {"BH", "JS1"}, {"XMMC", "安全文明施工费"}, {"DJ", ""}, {"GCL", "9"}};
    const QJsonObject item{{"TYPE", "XP"}, {"BH", "XP1"}, {"XMMC", "调试"}, {"DW", "项"}, {"DJ", "80"}, {"HJ", "80"}};
    const QJsonObject unknown{{"TYPE", "QQ"}, {"BH", "Q"}};
    return text(QJsonObject{{"zjnr", QJsonArray{quota, calc, unknown, item}}});
}
}

class TestCloudRecords : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void zjnrLinesParentsAndIds()
    {
        const QList<cloudZjnr> lines = cloudZjnr::parseList(sampleZjnr());
        QCOMPARE(lines.size(), 4);
        // Parent first, its child next; unknown kinds are skipped.
        QCOMPARE(lines[0].getType(), QStringLiteral("DE"));
        QCOMPARE(lines[0].getId(), 1);
        QCOMPARE(lines[0].getParentId(), -1);
        QVERIFY(lines[0].getIsDe());
        QCOMPARE(lines[1].getType(), QStringLiteral("CL"));
        QCOMPARE(lines[1].getParentId(), 1);
        QVERIFY(!lines[1].getIsDe());
        QCOMPARE(lines[2].getType(), QStringLiteral("JS"));
        QCOMPARE(lines[2].getParentId(), -1);
        QCOMPARE(lines[3].getType(), QStringLiteral("XP"));
        QCOMPARE(lines[3].getId(), 4);
    }

    void zjnrFieldsAndRounding()
    {
        const QList<cloudZjnr> lines = cloudZjnr::parseList(sampleZjnr());
        QCOMPARE(lines[0].getDebh(), QStringLiteral("03-4-12"));
        QCOMPARE(lines[0].getDemc(), QStringLiteral("配电箱安装"));
        QCOMPARE(lines[0].getGcl(), QStringLiteral("2"));
        QCOMPARE(lines[0].getDw(), QStringLiteral("台"));
        QCOMPARE(lines[0].getZhdj(), QStringLiteral("312.68"));
        QCOMPARE(lines[0].getZhhj(), QStringLiteral("625.35"));
        // A material line's price is its adjusted price.
        QCOMPARE(lines[1].getZhdj(), QStringLiteral("1200.00"));
        // A calculated line reads no quantity; its empty price shows "0.00".
        QCOMPARE(lines[2].getGcl(), QString());
        QCOMPARE(lines[2].getZhdj(), QStringLiteral("0.00"));
        QCOMPARE(lines[3].getGcl(), QString());
        QCOMPARE(lines[3].getDw(), QStringLiteral("项"));
    }

    void zjnrFeeTemplates()
    {
        const QList<cloudZjnr> lines = cloudZjnr::parseList(sampleZjnr());
        const QList<cloudFymb> fees = lines[0].getFymblist();
        QCOMPARE(fees.size(), 2);
        QCOMPARE(fees[1].getFybh(), QStringLiteral("2"));
        QCOMPARE(fees[1].getFymc(), QStringLiteral("管理费"));
        QCOMPARE(fees[1].getJsgs(), QStringLiteral("RGF+CLF+JXF"));
        QCOMPARE(fees[1].getFl(), QStringLiteral("100"));
        QCOMPARE(fees[1].getJe(), QStringLiteral("12.5"));
        QCOMPARE(fees[1].getJjbzd(), QStringLiteral("ZJF"));
        // "Rows"/"Row" spelling, given as JSON text, a single row object.
        QCOMPARE(lines[1].getFymblist().size(), 1);
        QCOMPARE(lines[1].getFymblist().first().getFymc(), QStringLiteral("材料费"));
        QVERIFY(lines[2].getFymblist().isEmpty());
    }

    void zjnrBadInput_data()
    {
        QTest::addColumn<QString>("input");
        QTest::newRow("empty") << QString();
        QTest::newRow("not json") << QStringLiteral("{zjnr:");
        QTest::newRow("no array") << QStringLiteral("{\"zjnr\":\"x\"}");
        QTest::newRow("no type") << QStringLiteral("{\"zjnr\":[{\"BH\":\"1\"}]}");
    }

    void zjnrBadInput()
    {
        QFETCH(QString, input);
        QVERIFY(cloudZjnr::parseList(input).isEmpty());
    }

    void zjnrTextRoundTrip()
    {
        const QList<cloudZjnr> lines = cloudZjnr::parseList(sampleZjnr());
        QCOMPARE(cloudZjnr::parseList(cloudZjnr::toZjnrText(lines)), lines);
    }

    void zjBeanReadsMatchReplyElement()
    {
        const QJsonObject element{{"qdbh", "030404017001"}, {"xmmc", "配电箱"}, {"jldw", "台"}, {"xmtz", "1.名称:配电箱"},
                                  {"gznr", "1.本体安装"},   {"zhdj", "1523.4"}, {"id", 42},     {"qdly", "2"},
                                  {"jzsj", "2024年05月"},   {"dd", "成都市"},   {"zjnr", sampleZjnr()}};
        const CloudZjBean bean(text(element));
        QVERIFY(bean.isValid());
        QCOMPARE(bean.getId(), 42);
        QCOMPARE(bean.getLy(), 2);
        QCOMPARE(bean.getXmbh(), QStringLiteral("030404017001"));
        QCOMPARE(bean.getXmmc(), QStringLiteral("配电箱"));
        QCOMPARE(bean.getDw(), QStringLiteral("台"));
        QCOMPARE(bean.getZhdj(), 1523.4);
        QCOMPARE(bean.getJzsj(), QStringLiteral("2024年05月"));
        QCOMPARE(bean.getDd(), QStringLiteral("成都市"));
        QCOMPARE(bean.getXmtz(), QStringLiteral("1.名称:配电箱"));
        QCOMPARE(bean.GetGcnr(), QStringLiteral("1.本体安装"));
        QCOMPARE(bean.getZjnrlist().size(), 4);
    }

    void zjBeanStringRoundTrip()
    {
        CloudZjBean bean;
        bean.setId(7);
        bean.setLy(1);
        bean.setXmbh(QStringLiteral("030411001001"));
        bean.setXmmc(QStringLiteral("配管\n敷设"));
        bean.setDw(QStringLiteral("m"));
        bean.setZhdj(18.375);
        bean.setXmtz(QStringLiteral("1.名称:电气配管\n2.材质:JDG"));
        bean.setGcnr(QStringLiteral("1.配管"));
        bean.setJzsj(QStringLiteral("2023年11月"));
        bean.setDd(QStringLiteral("四川省成都市"));
        bean.setZjnrlist(cloudZjnr::parseList(sampleZjnr()));
        const QString form = bean.toString();
        QVERIFY(!form.contains(QLatin1Char('\n')));
        const CloudZjBean back(form);
        QCOMPARE(back, bean);
        QCOMPARE(back.toString(), form);
    }

    void zjBeanRejectsNonObject_data()
    {
        QTest::addColumn<QString>("input");
        QTest::newRow("empty") << QString();
        QTest::newRow("array") << QStringLiteral("[1]");
        QTest::newRow("garbage") << QStringLiteral("id=3");
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
        m.SetClmc(QStringLiteral("电力电缆"));
        m.SetGgxh(QStringLiteral("YJV-4×25"));
        m.SetTj(86.12345678);
        QCOMPARE(GljBean::fromJson(m.toJson()).toJson(), m.toJson());
    }
};

QTEST_MAIN(TestCloudRecords)
#include "tst_cloudrecords.moc"
