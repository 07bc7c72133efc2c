#include "cloudjson.h"
#include "hosttestcase.h"

#include <materials/materialcheckrules.h>
#include <materials/materiallibraryrequests.h>
#include <materials/materialsaverules.h>

#include <hostapi/apptype.h>
#include <hostapi/ltdinfo.h>

#include <QtTest>

using Prices = QList<double>;
Q_DECLARE_METATYPE(Prices)

class TestMaterialRules : public HostTestCase
{
    Q_OBJECT
private slots:
    void cloudPriceAndDeviation_data()
    {
        QTest::addColumn<Prices>("cloud");
        QTest::addColumn<double>("tj");
        QTest::addColumn<bool>("tax");
        QTest::addColumn<QString>("price");
        QTest::addColumn<QString>("pcl");
        QTest::addColumn<double>("ydj");
        QTest::newRow("10.00 vs 12.00") << Prices{10.0} << 12.0 << true << "10.00" << "20.00%" << 10.0;
        QTest::newRow("zero cloud price") << Prices{0.0} << 12.0 << true << "0.00" << "100%" << 0.0;
        QTest::newRow("equal prices") << Prices{12.0} << 12.0 << true << "12.00" << "0.00%" << 12.0;
        QTest::newRow("mean of records, rounded first") << Prices{10.0, 10.015} << 10.01 << true << "10.01" << "0.00%"
                                                        << 10.01;
        QTest::newRow("cheaper than the cloud") << Prices{20.0, 30.0} << 20.0 << true << "25.00" << "-20.00%" << 25.0;
        QTest::newRow("price without tax chosen") << Prices{10.0} << 12.0 << false << "8.00" << "50.00%" << 8.0;
        QTest::newRow("no records") << Prices{} << 12.0 << true << "无" << "null" << -1000.0;
    }
    void cloudPriceAndDeviation()
    {
        QFETCH(Prices, cloud);
        QFETCH(double, tj);
        QFETCH(bool, tax);
        QList<CloudCjyjcBean> records;
        for (double p : cloud) {
            CloudCjyjcBean r;
            r.setGuid(7);
            r.setYdjhs(p);
            r.setYdjbhs(p - 2.0);
            records << r;
        }
        CloudCjyjcBean other;
        other.setGuid(8);
        other.setYdjhs(99.0);
        records << other;
        const MaterialCheckRules::Outcome o = MaterialCheckRules::evaluate(records, 7, tj, tax);
        QTEST(o.priceText, "price");
        QTEST(o.pcl, "pcl");
        QTEST(o.cloudPrice, "ydj");
    }

    void textInputs_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("in");
        QTest::addColumn<QString>("out");
        QTest::newRow("一般计税") << "basis" << "一般计税" << "不含税";
        QTest::newRow("简易计税") << "basis" << "简易计税" << "含税";
        QTest::newRow("营业税") << "basis" << "营业税" << "含税";
        QTest::newRow("unknown keeps label") << "basis" << "其他" << "含税(旧)";
        QTest::newRow("above 100") << "rate" << "150" << "100";
        QTest::newRow("two digits leading zero") << "rate" << "05" << "5";
        QTest::newRow("three digits leading zero") << "rate" << "099" << "99";
        QTest::newRow("plain value") << "rate" << "35" << "35";
        QTest::newRow("zero and decimal") << "rate" << "0.5" << "0.5";
        // A place is reduced to its last unit.
        QTest::newRow("province city district") << "place" << "四川省成都市金牛区" << "金牛区";
        QTest::newRow("one unit") << "place" << "金牛区" << "金牛区";
        QTest::newRow("caption before a colon") << "place" << "地点:湖北省武汉市江汉区" << "江汉区";
        QTest::newRow("without units kept whole") << "place" << "浦东新" << "浦东新";
        QTest::newRow("autonomous prefecture county") << "place" << "四川省凉山彝族自治州昭觉县" << "昭觉县";
    }
    void textInputs()
    {
        QFETCH(QString, kind);
        QFETCH(QString, in);
        const QString out = kind == "basis"  ? MaterialCheckRules::priceBasisLabel(in, "含税(旧)")
                            : kind == "rate" ? MaterialCheckRules::rateInput(in)
                                             : MaterialCheckRules::reducePlace(in);
        QTEST(out, "out");
    }

    void promptCountsFailures_data()
    {
        QTest::addColumn<QString>("total");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<QString>("failed");
        QTest::newRow("total 0 keeps saved") << "0" << "3" << "3";
        QTest::newRow("difference") << "32" << "30" << "2";
        QTest::newRow("all saved") << "5" << "5" << "0";
        QTest::newRow("total not a number") << "共5" << "4" << "4";
    }
    void promptCountsFailures()
    {
        QFETCH(QString, total);
        QFETCH(QString, saved);
        QFETCH(QString, failed);
        QCOMPARE(MaterialSaveRules::failedCount(total, saved), failed);
        QCOMPARE(MaterialSaveRules::promptText(total, saved),
                 "选择范围内共" + total + "条材价,其中保存成功" + saved + "条,\n保存失败(不满足保存条件)" + failed + "条");
    }

    void librariesFromEitherReplyForm()
    {
        const QJsonArray list{QJsonObject{{"kmms", "甲库"}, {"_id", "a1"}}, QJsonObject{{"kmms", "乙库"}, {"_id", 7}}};
        const QList<QPair<QString, QString>> expected{{"甲库", "a1"}, {"乙库", "7"}};
        QCOMPARE(MaterialSaveRules::libraries(list), expected);
        QCOMPARE(MaterialSaveRules::libraries(QJsonObject{{"sjksys", list}}), expected);
    }

    void requestsPerTier_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<QJsonObject>("list");
        QTest::addColumn<QJsonObject>("rename");
        QTest::addColumn<bool>("permission");
        using cloudjson::method;
        QTest::newRow("personal") << "kv_token_user" << method("materiallist")
                                  << method("personmaterialedit", {{"sjksyid", "L1"}, {"kmc", "新名"}, {"oper", 2}})
                                  << false;
        QTest::newRow("Korvane") << "kv_token" << method("getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 0}})
                                 << method("enterprisematrialedit",
                                           {{"sjksyid", "L1"}, {"kuName", "新名"}, {"oper", 2}, {"qiyeId", 0}})
                                 << false;
        QTest::newRow("enterprise") << "cj_11" << method("getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 11}})
                                    << method("enterprisematrialedit",
                                              {{"sjksyid", "L1"}, {"kuName", "新名"}, {"oper", 2}, {"qiyeId", 11}})
                                    << true;
    }
    static QByteArray text(const QJsonObject &o) { return QJsonDocument(o).toJson(QJsonDocument::Compact); }
    void requestsPerTier()
    {
        QFETCH(QString, token);
        QFETCH(bool, permission);
        QFETCH(QJsonObject, list);
        QFETCH(QJsonObject, rename);
        const LtdInfo server("库", token, 2, token == "cj_11" ? 11 : 0, true);
        using R = MaterialLibraryRequests;
        QCOMPARE(text(R::list(&server).toJson()), text(cloudjson::envelope(token, list, AppType())));
        QCOMPARE(text(R::edit(&server, R::Rename, "L1", "新名").toJson()), text(cloudjson::envelope(token, rename, AppType())));
        QCOMPARE(R::needsPermission(&server), permission);
        QCOMPARE(text(R::permission(&server).toJson()),
                 text(cloudjson::envelope(token, cloudjson::method("isauthorityforenterprise", {{"qiyeId", server.getQyid()}}), AppType())));
    }
};

QTEST_MAIN(TestMaterialRules)
#include "tst_materialrules.moc"
