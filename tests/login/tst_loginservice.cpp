// The login path against the real embedded cloud service: the server list,
// the Korvane login and an enterprise login, driven through answered forms.
#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/cloudserverchoice.h>

#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QComboBox>
#include <QTemporaryDir>
#include <QtTest>

using namespace loginanswers;

namespace {
QStringList texts(const CloudServerCombox &combo)
{
    QStringList out;
    for (int i = 0; i < combo.comboBox()->count(); ++i)
        out << combo.comboBox()->itemText(i);
    return out;
}
}

class TestLoginService : public HostTestCase
{
    Q_OBJECT
private:
    QTemporaryDir cloudDir; // outlives the service, which the channel holds until cleanup

private slots:
    void loginKorvaneThenEnterprise()
    {
        auto service = std::make_shared<CloudService>(cloudDir.path(), CloudService::Seed::Minimal);
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
        ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
        ServerRegistry::instance()->reset();
        QWidget dialog;
        auto *combo = new CloudServerCombox(&dialog);
        auto *choice = new CloudServerChoice(combo, GuardSite("Xmytz", &dialog));
        choice->start();
        fx->answerNextModal(fillLogin(ServiceSeed::DemoUser, ServiceSeed::DemoPassword));
        emit combo->signalCurrentItemChanged(1);
        QVERIFY(choice->getCurrServer()->getServerLogin());
        // The account's enterprises appear after the Korvane login; the big
        // data entry stays out of the list.
        QCOMPARE(texts(*combo), (QStringList{"个人云", "Korvane云", "华东建设集团有限公司", "蜀川造价咨询有限公司"}));
        QCOMPARE(choice->removedBigDataIndex(), 2);
        // The form for entry 2 must name the same enterprise: the host index
        // skips the removed big data entry.
        auto seen = std::make_shared<FormSeen>();
        fx->answerNextModal(fillLogin(ServiceSeed::DemoUser, ServiceSeed::DemoPassword, seen));
        emit combo->signalCurrentItemChanged(2);
        QCOMPARE(seen->server + seen->error, QStringLiteral("华东建设集团有限公司"));
        LtdInfo *east = choice->getCurrServer();
        QCOMPARE(east->getQyid(), ServiceSeed::EastEnterprise);
        QVERIFY(east->getServerLogin());
        QVERIFY(east->getToken() != QStringLiteral("ent_%1").arg(ServiceSeed::EastEnterprise));
        const QString token = east->getToken();
        // The cloud knows the session: a fresh list keeps the entry logged in.
        QList<LtdInfo *> again;
        QVERIFY(CloudBusiness::requestServerList(again, QString()));
        QVERIFY(again.contains(east) && east->getServerLogin() && !again.at(4)->getServerLogin());
        QCOMPARE(east->getToken(), token);
        ServerRegistry::instance()->reset();
    }
};

QTEST_MAIN(TestLoginService)
#include "tst_loginservice.moc"
