#include "hostfixture.h"

#include <cloud/cloudasyncrequest.h>
#include <cloud/cloudexchange.h>
#include <cloud/cloudrequest.h>
#include <cloud/cloudtier.h>

#include <hostapi/datalibrary.h>
#include <hostapi/hostconfig.h>
#include <hostapi/ltdinfo.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <memory>

class TestCloudRequest : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

    static const QString &permPerson()
    {
        static const QString m = QStringLiteral("listeditpermissionjudgmentforperson");
        return m;
    }
    static const QString &permEnterprise()
    {
        static const QString m = QStringLiteral("listeditpermissionjudgmentforenterprise");
        return m;
    }

public slots:
    void onAsyncReply(const QJsonObject &reply) { asyncReplies << reply; }

public:
    QList<QJsonObject> asyncReplies;

private slots:
    void init()
    {
        fx = std::make_unique<HostFixture>();
        DataLibrary::Instance()->clearAppType();
        asyncReplies.clear();
    }
    void cleanup()
    {
        DataLibrary::Instance()->clearAppType();
        fx.reset();
    }

    void appTypeFollowsTheHost()
    {
        DataLibrary::Instance()->setAppType(23);
        LtdInfo server(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, true);
        QCOMPARE(CloudRequest(&server, QStringLiteral("m")).toJson().value("app_type").toInt(), 23);
        QCOMPARE(CloudRequest::withoutToken(QStringLiteral("m")).toJson().value("app_type").toInt(), 23);
    }

    void tierTable_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<int>("qyid");
        QTest::addColumn<QString>("method");
        QTest::addColumn<int>("qiyeID");
        QTest::addColumn<int>("usetype");
        QTest::newRow("personal") << "kv_token_user" << 77 << "getchaptertreeforperson" << -1 << 1;
        QTest::newRow("korvane") << "kv_token" << 77 << "getchaptertreeforkv" << 0 << 3;
        QTest::newRow("enterprise") << "ent_session_9" << 77 << "getchaptertreeforenterprise" << 77 << 2;
        QTest::newRow("unknown token") << "something else" << 5 << "getchaptertreeforenterprise" << 5 << 2;
        QTest::newRow("case differs") << "KV_TOKEN" << 6 << "getchaptertreeforenterprise" << 6 << 2;
        QTest::newRow("korvane big data") << "kv_token_bigdata" << 0 << "getchaptertreeforenterprise" << 0 << 2;
    }

    void tierTable()
    {
        QFETCH(QString, token);
        QFETCH(int, qyid);
        QFETCH(QString, method);
        QFETCH(int, qiyeID);
        QFETCH(int, usetype);
        LtdInfo server(QStringLiteral("srv"), token, 0, qyid, true);
        const CloudRequest r = CloudRequest::tiered(&server, QStringLiteral("getchaptertreeforperson"),
                                                    QStringLiteral("getchaptertreeforkv"),
                                                    QStringLiteral("getchaptertreeforenterprise"))
                                   .withTierFields();
        QCOMPARE(r.method(), method);
        QCOMPARE(r.data().value(QStringLiteral("qiyeID")).toInt(-99), qiyeID);
        QCOMPARE(r.data().value(QStringLiteral("usetype")).toInt(-99), usetype);
        QCOMPARE(r.toJson().value(QStringLiteral("orgin_token")).toString(), token);
    }

    void korvanePermissionUsesEnterpriseMethod()
    {
        LtdInfo kv(QStringLiteral("Korvane云"), QStringLiteral("kv_token"), 1, 42, true);
        fx->channel().replyOk();
        const auto data = CloudExchange::call(
            CloudRequest::tiered(&kv, permPerson(), permEnterprise(), permEnterprise()).withTierFields(), nullptr);
        QVERIFY(data.has_value());
        const QJsonObject expected{
            {"cmd", "cloudSoft"},
            {"app_type", 16},
            {"orgin_token", "kv_token"},
            {"data", QJsonObject{{"method", permEnterprise()}, {"qiyeID", 0}, {"usetype", 3}}}};
        QCOMPARE(fx->channel().lastRequest(), expected);
    }

    void methodStyleExactJson()
    {
        LtdInfo ent(QStringLiteral("华东企业"), QStringLiteral("ent_tok"), 2, 9, true);
        QJsonObject req = CloudRequest::tiered(&ent, QStringLiteral("getchaptertreeforperson"),
                                               QStringLiteral("getchaptertreeforkv"),
                                               QStringLiteral("getchaptertreeforenterprise"))
                              .withEnterpriseQiyeId()
                              .set(QStringLiteral("zjid"), QString())
                              .set(QStringLiteral("bzqdkid"), QStringLiteral("lib1"))
                              .set(QStringLiteral("sfjzzsm"), 1)
                              .toJson();
        QCOMPARE(req.keys(), (QStringList{"app_type", "cmd", "data", "orgin_token"}));
        QCOMPARE(req.value("data").toObject(),
                 (QJsonObject{{"method", "getchaptertreeforenterprise"},
                              {"qiyeID", 9},
                              {"zjid", ""},
                              {"bzqdkid", "lib1"},
                              {"sfjzzsm", 1}}));

        LtdInfo person(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 9, true);
        const QJsonObject personData = CloudRequest::tiered(&person, QStringLiteral("a"), QStringLiteral("b"),
                                                            QStringLiteral("c"))
                                           .withEnterpriseQiyeId()
                                           .data();
        QCOMPARE(personData, (QJsonObject{{"method", "a"}}));
    }

    void libraryStyleExactJson()
    {
        LtdInfo server(QStringLiteral("企业A"), QStringLiteral("ent_a"), -1, 31, true);
        fx->channel().replyOk();
        QVERIFY(CloudExchange::call(CloudRequest::library(&server, QStringLiteral("editNZQDK"))
                                        .withOperation(0, QJsonObject{{"qdkid", ""}, {"qdkmc", "新库"}}),
                                    nullptr));
        const QJsonObject expected{
            {"cmd", "cloudSoft"},
            {"app_type", 16},
            {"orgin_token", "ent_a"},
            {"data", QJsonObject{{"method", "editNZQDK"},
                                 {"reqeuestype", -1},
                                 {"qyid", 31},
                                 {"czlx", 0},
                                 {"para", QJsonObject{{"qdkid", ""}, {"qdkmc", "新库"}}}}}};
        QCOMPARE(fx->channel().lastRequest(), expected);
    }

    void asynchronousFormHasNoToken()
    {
        const QJsonObject req = CloudRequest::withoutToken(QStringLiteral("personchapterinfoforuploadqd")).toJson();
        QCOMPARE(req, (QJsonObject{{"cmd", "cloudSoft"},
                                   {"app_type", 16},
                                   {"data", QJsonObject{{"method", "personchapterinfoforuploadqd"}}}}));
    }

    void replyReading_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("done");
        QTest::addColumn<QJsonValue>("data");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("ok with array") << QByteArray(R"({"code":0,"msg":"","data":[{"mc":"库1","id":"1"}]})") << true
                                       << QJsonValue(QJsonArray{QJsonObject{{"mc", "库1"}, {"id", "1"}}})
                                       << QStringList();
        QTest::newRow("ok without data") << QByteArray(R"({"code":0})") << true << QJsonValue(QJsonValue::Undefined)
                                         << QStringList();
        QTest::newRow("no code is success") << QByteArray(R"({"msg":"x","data":7})") << true << QJsonValue(7)
                                            << QStringList();
        QTest::newRow("refused") << QByteArray(R"({"code":500,"msg":"没有权限 ， 请联系管理员","data":[1]})") << false
                                 << QJsonValue() << QStringList{QStringLiteral("没有权限 ， 请联系管理员")};
        QTest::newRow("refused negative") << QByteArray(R"({"code":-1,"msg":" 失败 "})") << false << QJsonValue()
                                          << QStringList{QStringLiteral(" 失败 ")};
        QTest::newRow("empty bytes") << QByteArray() << false << QJsonValue() << QStringList();
        QTest::newRow("garbage") << QByteArray("<html>502</html>") << false << QJsonValue() << QStringList();
        QTest::newRow("json array") << QByteArray("[0]") << false << QJsonValue() << QStringList();
    }

    void replyReading()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, done);
        QFETCH(QJsonValue, data);
        QFETCH(QStringList, shown);
        QWidget dialog;
        LtdInfo server(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, true);
        fx->channel().replyBytes(bytes);
        const auto result = CloudExchange::call(CloudRequest(&server, QStringLiteral("m")), &dialog);
        QCOMPARE(result.has_value(), done);
        if (done)
            QCOMPARE(*result, data);
        QCOMPARE(fx->messageTexts(), shown);
        for (const MessageBoxRequest &m : fx->messages()) {
            QCOMPARE(m.parent.data(), &dialog);
            QCOMPARE(m.title, QString());
            QCOMPARE(m.kind, 0);
        }
        QCOMPARE(fx->channel().requests().size(), 1);
    }

    void replyCodeAndMsgReadable()
    {
        const CloudReply r = CloudReply::parse(R"({"code":3,"msg":"无权限"})");
        QVERIFY(r.answered());
        QVERIFY(!r.succeeded());
        QCOMPARE(r.code(), 3);
        QCOMPARE(r.msg(), QStringLiteral("无权限"));
        QVERIFY(!CloudReply::parse(QByteArray()).answered());
    }

    void configValueIsLocal()
    {
        HostConfig::setValue(QStringLiteral("SaveBzQd"), QStringLiteral("true"));
        QCOMPARE(CloudExchange::configValue(QStringLiteral("SaveBzQd")), QStringLiteral("true"));
        QCOMPARE(CloudExchange::configValue(QStringLiteral("AreaVer")), QString());
        QVERIFY(fx->channel().requests().isEmpty());
    }

    void asynchronousChannel()
    {
        ServicesUtil::publish();
        QVERIFY(CloudAsyncRequest::service());
        CloudAsyncRequest::listen(this, &TestCloudRequest::onAsyncReply);
        CloudAsyncRequest::listen(this, &TestCloudRequest::onAsyncReply); // no double delivery
        fx->channel().replyOk(QJsonArray{QStringLiteral("章节")});
        QVERIFY(CloudAsyncRequest::send(CloudRequest::withoutToken(QStringLiteral("personchapterinfoforuploadqd"))));
        QTRY_COMPARE(asyncReplies.size(), 1);
        QCOMPARE(asyncReplies.first().value("data").toArray().first().toString(), QStringLiteral("章节"));
        QVERIFY(!fx->channel().lastRequest().contains(QStringLiteral("orgin_token")));
        QTest::qWait(20);
        QCOMPARE(asyncReplies.size(), 1);
        QObject::disconnect(CloudAsyncRequest::service(), nullptr, this, nullptr);
    }

    void asynchronousWithoutServiceFails()
    {
        qApp->setProperty("ServicesUtil", QVariant());
        QCOMPARE(CloudAsyncRequest::service(), nullptr);
        QVERIFY(!CloudAsyncRequest::send(CloudRequest::withoutToken(QStringLiteral("m"))));
        QVERIFY(fx->channel().requests().isEmpty());
    }
};

QTEST_MAIN(TestCloudRequest)
#include "tst_cloudrequest.moc"
