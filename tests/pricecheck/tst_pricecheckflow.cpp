// The unit-price check in the host against the real embedded cloud service:
// wizard, then the browser on the current bill, then previous/next.
#include "cloudjson.h"
#include "hosttestcase.h"

#include <mainwindow.h>
#include <projectdocument.h>

#include <pricecheck/tqdtjyjc.h>
#include <pricecheck/tvelqddjjc.h>

#include <hostapi/hostconstants.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <hostapi/ztablemodel.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace cloudjson;

class TestPriceCheckFlow : public HostTestCase
{
    Q_OBJECT
    QTemporaryDir cloudDir;
    std::shared_ptr<CloudService> service;

private slots:
    void initTestCase()
    {
        service = std::make_shared<CloudService>(cloudDir.path(), CloudService::Seed::Full);
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
    }

    void wizardToBrowserAndThroughTheBills()
    {
        ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
        const QJsonObject login = envelope(KvToken, {{"method", "login"}, {"username", ServiceSeed::DemoUser},
                                               {"password", ServiceSeed::DemoPassword}}, 16);
        const QJsonObject data = object(exchange(login));
        Users::Instance()->Kvy()->setLogin(data.value("userid").toVariant().toString(), data.value("username").toString(),
                                           data.value("session").toString());
        ProjectDocument project;
        QString error;
        QVERIFY2(project.loadFile(ProjectDocument::samplePath(), &error), qPrintable(error));
        MainWindow main(&project);
        BaseDataItem *first = main.context().currentBill;
        BaseDataItem *second = project.neighbourBill(first, true, false);
        QVERIFY(first && second);

        fx->answerNextModal([](QDialog *d) {
            auto *wizard = qobject_cast<TQdtjyjc *>(d);
            wizard->nextButton()->click();
            wizard->findChild<QRadioButton *>(QStringLiteral("radXs"))->click();
            wizard->okButton()->click();
            return 0;
        });
        QStringList seen;
        auto record = [&](TVelQddjjc *browser) {
            seen << QStringLiteral("%1 %2 %3")
                        .arg(browser->label(QStringLiteral("lblXmbh"))->text())
                        .arg(browser->listModel()->rowCount())
                        .arg(main.context().currentBill->text(BaseDataItem::CodeRole));
        };
        fx->answerNextModal([&](QDialog *d) {
            auto *browser = qobject_cast<TVelQddjjc *>(d);
            record(browser);
            browser->nextButton()->click();
            record(browser);
            browser->previousButton()->click();
            record(browser);
            return 0;
        });
        main.openEntry(QStringLiteral("pricecheck"));
        const QString a = first->text(BaseDataItem::CodeRole);
        const QString b = second->text(BaseDataItem::CodeRole);
        QCOMPARE(seen, (QStringList{a + " 4 " + a, b + " 4 " + b, a + " 4 " + a}));
        QVERIFY(fx->messageTexts().isEmpty());
        QVERIFY(fx->exceptionReports().isEmpty());
    }
};

QTEST_MAIN(TestPriceCheckFlow)
#include "tst_pricecheckflow.moc"
