#include "hosttestcase.h"
#include "loginanswers.h"

#include <featurelibraryseeder.h>

#include <cloud/cloudworkerrequest.h>
#include <features/featurestore.h>
#include <features/gqdxmtzmszn.h>
#include <pricecheck/tvelqddjjc.h>
#include <smartpricing/veldqqdznzj.h>
#include <cloud/cloudsources.h>

#include <hostapi/basedataitem.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/serverregistry.h>
#include <hostapi/users.h>

#include <QCheckBox>
#include <QPushButton>
#include <QJsonArray>
#include <QPointer>
#include <QRadioButton>
#include <QSignalSpy>
#include <QtTest>

using namespace loginanswers;

// The worker-thread dialogs under overlapping requests, and destroyed while
// their requests run. VELORA_STRESS_RUNS sets the rounds (the thread
// sanitizer script runs 100).
namespace {
int rounds()
{
    const int n = qEnvironmentVariableIntValue("VELORA_STRESS_RUNS");
    return n > 0 ? n : 3;
}

QJsonObject matchReply()
{
    const QJsonObject m{{"guida", 7}, {"xmmc", "配线"}, {"xmtz", "特征"}, {"gznr", "内容"}, {"bzqdkmc", "库A"}};
    return QJsonObject{{"code", 0}, {"msg", ""}, {"allCount", 1}, {"pageRowCount", 10},
                       {"data", QJsonObject{{"bzqds", QJsonArray{m}}, {"jlqds", QJsonArray()}}}};
}

// Generous: the sanitizer builds run many times slower.
constexpr int kWaitMs = 30000;

const QJsonObject kInfoReply{{"code", 0}, {"data", QJsonObject{{"xmmc", "某办公楼"}}}};
}

class TestWorkerStress : public HostTestCase
{
    Q_OBJECT
    BaseDataItem bill{501};

    std::unique_ptr<Gqdxmtzmszn> searchingGuide(int overlapping)
    {
        fx->channel().replyOk(serverList());
        auto guide = std::make_unique<Gqdxmtzmszn>();
        for (int i = 0; i < overlapping; ++i)
            fx->channel().reply(matchReply());
        guide->setCurrQd(&bill);
        guide->cloudRadio()->setChecked(true);
        for (int i = 1; i < overlapping; ++i)
            guide->slotBtnGrySsClicked();
        return guide;
    }

    // Four overlapping matches; only the newest fills the list.
    bool pricingRound(bool destroy)
    {
        JJBTableBase table(QStringLiteral("分部分项"), JJBTableBase::BillTableKind);
        auto item = std::make_unique<BaseDataItem>(77, BaseDataItem::BillKind);
        item->setData(BaseDataItem::CodeRole, "030412004001");
        item->setData(BaseDataItem::NameRole, "配线");
        item->setData(BaseDataItem::KindRole, "gb24");
        BaseDataItem *current = table.rootItem()->appendChild(std::move(item));
        fx->channel().replyOk(serverList());
        auto dlg = std::make_unique<VelDqqdznzj>();
        dlg->setCurrJjb(&table);
        dlg->CreateUI();
        dlg->sources()->standardBox()->setChecked(true);
        dlg->setCurrQd(current);
        const QJsonObject match{{"id", 1}, {"qdly", "2"}, {"qdbh", "030411001"}, {"xmmc", "配线"}, {"zhdj", 9}};
        // "自动匹配" is on: making the bill current is the first match.
        for (int i = 0; i < 4; ++i)
            fx->channel().replyOk(QJsonArray{match});
        fx->channel().reply(kInfoReply);
        for (int i = 0; i < 3; ++i)
            dlg->matchButton()->click();
        if (destroy)
            return true;
        return QTest::qWaitFor([&] { return !dlg->isLoading(); }, kWaitMs) && dlg->listModel()->rowCount() == 1;
    }

    // One round; true when the dialog that stays open showed what it should.
    bool round(const QString &dialog, bool destroy)
    {
        if (dialog == "guide search") {
            auto guide = searchingGuide(3);
            if (destroy)
                return true;
            QSignalSpy shown(guide.get(), &Gqdxmtzmszn::signalUpdataTzData);
            return shown.wait(kWaitMs) && guide->cloudResults().size() == 1;
        }
        if (dialog == "guide project information") {
            auto guide = searchingGuide(1);
            QSignalSpy shown(guide.get(), &Gqdxmtzmszn::signalUpdataTzData);
            if (!shown.wait(kWaitMs))
                return false;
            fx->channel().reply(kInfoReply);
            fx->channel().reply(kInfoReply);
            guide->requestProjectInfo(0, 0);
            guide->requestProjectInfo(0, 0);
            if (destroy)
                return true;
            fx->answerNextModal([](QDialog *) { return 0; });
            QSignalSpy info(guide.get(), &Gqdxmtzmszn::signalUpdataGcslData);
            return info.wait(kWaitMs);
        }
        if (dialog == "current-bill pricing")
            return pricingRound(destroy);
        fx->channel().replyOk(serverList());
        QPointer<TVelQddjjc> browser = new TVelQddjjc;
        browser->CreateUI();
        fx->channel().reply(kInfoReply);
        if (destroy)
            QTimer::singleShot(0, browser.data(), [browser] { delete browser; });
        QStringList bills{R"({"id":1,"qdbh":"Q1","xmmc":"配线","zhdj":9})"};
        browser->setCloudDjData(bills);
        const bool shown = destroy || (browser && browser->projectInfoText() == "项目名称：某办公楼\n");
        delete browser;
        return shown;
    }

private slots:
    void init()
    {
        HostTestCase::init();
        FeatureLibrarySeeder::build(FeatureStore::libraryPath("GB24"), "GB24", QJsonArray());
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        bill.setData(BaseDataItem::CodeRole, "030412004001");
        bill.setData(BaseDataItem::NameRole, "配线");
        bill.setData(BaseDataItem::KindRole, "gb24");
    }
    void cleanup()
    {
        QVERIFY(CloudWorkerRequest::waitForWorkers(10000));
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void overlappingAndDestroyed_data()
    {
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<bool>("destroy");
        for (const char *dialog :
             {"guide search", "guide project information", "price browser information", "current-bill pricing"}) {
            QTest::newRow(qPrintable(QString(dialog) + ", kept")) << QString(dialog) << false;
            QTest::newRow(qPrintable(QString(dialog) + ", destroyed")) << QString(dialog) << true;
        }
    }
    void overlappingAndDestroyed()
    {
        QFETCH(QString, dialog);
        QFETCH(bool, destroy);
        for (int i = 0; i < rounds(); ++i) {
            QVERIFY2(round(dialog, destroy), qPrintable(QString("round %1").arg(i)));
            QVERIFY(CloudWorkerRequest::waitForWorkers(10000));
            // Replies still queued for a dead dialog go nowhere.
            QCoreApplication::processEvents();
            fx->channel().clear();
        }
        QCOMPARE(CloudWorkerRequest::runningWorkers(), 0);
        QCOMPARE(fx->exceptionReports(), QStringList());
    }
};

QTEST_MAIN(TestWorkerStress)
#include "tst_workerstress.moc"
