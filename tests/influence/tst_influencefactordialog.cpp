#include "hostfixture.h"

#include <cloud/tcloudcldialog_yxys.h>
#include <cloud/tqdtjyjc_yxys.h>
#include <cloud/tveldqqdznzj_yxys.h>
#include <cloud/tvelqddjjc_yxys.h>

#include <hostapi/apppaths.h>
#include <hostapi/clsdac.h>
#include <hostapi/placedictionary.h>
#include <hostapi/textpathdlg.h>
#include <hostapi/textpathwidget.h>
#include <hostapi/xmgktime.h>

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>

namespace {
using Factory = std::function<InfluenceFactorDialog *()>;

QStringList texts(const QWidget *dialog)
{
    QStringList out;
    for (const QLabel *l : dialog->findChildren<QLabel *>())
        out << l->text();
    return out;
}

QStringList buttonTexts(const QWidget *dialog)
{
    QStringList out;
    for (const QPushButton *b : dialog->findChildren<QPushButton *>())
        if (!b->text().isEmpty())
            out << b->text();
    out.sort();
    return out;
}

// A place set whose rows the test chooses.
void writePlaceSet(const QList<QStringList> &rows)
{
    DBM::clsDAC dac(HostDatabasePath(QStringLiteral("IDTDICTMIDDLE")));
    dac.execSql(QStringLiteral("CREATE TABLE subset_dd (sid TEXT, name TEXT, pid TEXT, rownum INTEGER, sysCode TEXT)"));
    for (const QStringList &r : rows)
        dac.execPrepared(QStringLiteral("INSERT INTO subset_dd VALUES (?, ?, ?, ?, '')"),
                         {PlaceDictionary::placeSetId(), r.at(0), r.at(1), r.at(2).toInt()});
}
}

Q_DECLARE_METATYPE(Factory)

class TestInfluenceFactorDialog : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

    static void slotVariants()
    {
        QTest::addColumn<Factory>("make");
        QTest::newRow("TVelQddjjc_Yxys") << Factory([] { return new TVelQddjjc_Yxys; });
        QTest::newRow("TQdtjyjc_Yxys") << Factory([] { return new TQdtjyjc_Yxys; });
    }
    static std::unique_ptr<InfluenceFactorDialog> made(const Factory &make, const QString &time = QStringLiteral("2024年03月"))
    {
        std::unique_ptr<InfluenceFactorDialog> d(make());
        d->setComSjText(time);
        d->CreateUI();
        return d;
    }

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void variantsDifferOnlyAsConfigured_data()
    {
        QTest::addColumn<Factory>("make");
        QTest::addColumn<QStringList>("labels");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("styled");
        const QString spaced = QStringLiteral("SELECT * FROM subset_dd WHERE sid = '%1';");
        QTest::newRow("TVelQddjjc_Yxys") << Factory([] { return new TVelQddjjc_Yxys; })
                                         << QStringList{QStringLiteral("时间："), QStringLiteral("地点:")}
                                         << QStringList{QStringLiteral("修改"), QStringLiteral("修改"), QStringLiteral("清除"),
                                                        QStringLiteral("关闭"), QStringLiteral("确定")}
                                         << spaced << true;
        QTest::newRow("TQdtjyjc_Yxys") << Factory([] { return new TQdtjyjc_Yxys; })
                                       << QStringList{QStringLiteral("时间："), QStringLiteral("地点:")}
                                       << QStringList{QStringLiteral("修改"), QStringLiteral("修改"), QStringLiteral("清空"),
                                                      QStringLiteral("关闭"), QStringLiteral("确定")}
                                       << QStringLiteral("SELECT *FROM subset_dd WHERE sid = '%1';") << false;
        QTest::newRow("TVelDqqdznzj_Yxys") << Factory([] { return new TVelDqqdznzj_Yxys; })
                                           << QStringList{QStringLiteral("时间："), QStringLiteral("地点:")}
                                           << QStringList{QStringLiteral("修改"), QStringLiteral("关闭"), QStringLiteral("确定")}
                                           << spaced << false;
        QTest::newRow("TCloudCLDialog_Yxys") << Factory([] { return new TCloudCLDialog_Yxys; })
                                             << QStringList{QStringLiteral("时间:"), QStringLiteral("地点:")}
                                             << QStringList{QStringLiteral("清空"), QStringLiteral("取消"), QStringLiteral("确定")}
                                             << spaced << false;
    }
    void variantsDifferOnlyAsConfigured()
    {
        QFETCH(Factory, make);
        QFETCH(QStringList, labels);
        QFETCH(QStringList, buttons);
        QFETCH(QString, query);
        QFETCH(bool, styled);
        auto d = made(make);
        for (const QString &l : labels)
            QVERIFY2(texts(d->clientWidget()).contains(l), qPrintable(l));
        QStringList sortedButtons = buttons;
        sortedButtons.sort();
        QCOMPARE(buttonTexts(d->clientWidget()), sortedButtons);
        QCOMPARE(d->layoutConfig().placeQuery, query);

        auto *comSj = d->findChild<QLineEdit *>(QStringLiteral("comSj"));
        auto *comDd = d->findChild<QLineEdit *>(QStringLiteral("comDd"));
        QVERIFY(comSj && comDd);
        QVERIFY(comSj->isReadOnly() && comDd->isReadOnly());
        QCOMPARE(comSj->text(), QStringLiteral("2024年03月"));
        QCOMPARE(comDd->text(), QStringLiteral("无"));
        QCOMPARE(d->syncBox()->text(), QStringLiteral("同步修改工程设置表相应内容"));
        QVERIFY(d->getChecked());
        d->syncBox()->setChecked(false);
        QVERIFY(!d->getChecked());

        if (styled) {
            const QString text = d->palette().color(QPalette::WindowText).name();
            const QString bg = d->palette().color(QPalette::Base).name();
            QCOMPARE(comSj->styleSheet(), QStringLiteral("#comSj{color:%1;background:%2;border:1px solid %1;}").arg(text, bg));
            QCOMPARE(comDd->styleSheet(), QStringLiteral("#comDd{color:%1;background:%2;border:1px solid %1;}").arg(text, bg));
        } else {
            QVERIFY(comSj->styleSheet().isEmpty() && comDd->styleSheet().isEmpty());
        }
    }

    void placeTextOnlyWhereTheVariantTakesIt()
    {
        TQdtjyjc_Yxys d;
        d.setComDdText(QStringLiteral("四川省成都市"));
        d.CreateUI();
        QCOMPARE(d.placeField()->text(), QStringLiteral("四川省成都市"));
        d.setComDdText(QStringLiteral("无"));
        QCOMPARE(d.placeField()->text(), QStringLiteral("无"));
    }

    void timePickerChoiceOrCancel_data()
    {
        slotVariants();
    }
    void timePickerChoiceOrCancel()
    {
        QFETCH(Factory, make);
        auto d = made(make);
        QString primed;
        fx->answerNextModal([&](QDialog *dlg) {
            auto *picker = qobject_cast<XmgkTime *>(dlg);
            if (!picker)
                return 1;
            primed = picker->GetTimeData();
            picker->chooseMonth(2023, 7);
            return int(XmgkTime::Chosen);
        });
        d->timeButton()->click();
        QCOMPARE(primed, QStringLiteral("2024年03月"));
        QCOMPARE(d->timeField()->text(), QStringLiteral("2023年07月"));

        fx->answerNextModal([](QDialog *dlg) {
            qobject_cast<XmgkTime *>(dlg)->chooseMonth(2020, 1);
            return int(XmgkTime::Cancelled);
        });
        d->timeButton()->click();
        QCOMPARE(d->timeField()->text(), QStringLiteral("2023年07月"));
        QCOMPARE(fx->modalRuns(), (QStringList{QStringLiteral("XmgkTime"), QStringLiteral("XmgkTime")}));
        // The pickers are gone once answered.
        QCOMPARE(d->findChildren<XmgkTime *>().size(), 0);
    }

    void placePickerGrowsTabByTab_data()
    {
        slotVariants();
    }
    void placePickerGrowsTabByTab()
    {
        QFETCH(Factory, make);
        auto d = made(make);
        QString caption;
        QStringList firstTab, secondTabAtOpen, cities, districts;
        QString firstTitle, secondTitle;
        fx->answerNextModal([&](QDialog *dlg) {
            auto *picker = qobject_cast<TextPathDlg *>(dlg);
            if (!picker)
                return 0;
            TextPathWidget *w = picker->pathWidget();
            caption = picker->caption();
            firstTitle = w->tabTitle(0);
            firstTab = w->tabItems(0);
            secondTitle = w->tabTitle(1);
            secondTabAtOpen = w->tabItems(1);
            w->chooseItem(0, QStringLiteral("四川省"));
            cities = w->tabItems(1);
            w->chooseItem(1, QStringLiteral("成都市"));
            districts = w->tabItems(2);
            w->chooseItem(2, QStringLiteral("金牛区"));
            return 1;
        });
        d->placeButton()->click();
        QCOMPARE(caption, QStringLiteral("工程地点选择"));
        QCOMPARE(firstTitle, QStringLiteral("北京市"));
        QCOMPARE(firstTab.size(), 31);
        QCOMPARE(firstTab.at(22), QStringLiteral("四川省"));
        QCOMPARE(secondTitle, QStringLiteral("类别1"));
        QCOMPARE(secondTabAtOpen, QStringList{QStringLiteral("市辖区")});
        QCOMPARE(cities.first(), QStringLiteral("成都市"));
        QCOMPARE(cities.size(), 21);
        QVERIFY(districts.contains(QStringLiteral("金牛区")));
        QCOMPARE(d->placeField()->text(), QStringLiteral("四川省成都市金牛区"));
        QVERIFY(fx->messages().isEmpty());
    }

    void placePickerPlaceholdersAndCancel()
    {
        auto d = made([] { return new TVelQddjjc_Yxys; });
        fx->answerNextModal([](QDialog *dlg) {
            qobject_cast<TextPathDlg *>(dlg)->pathWidget()->chooseItem(0, QStringLiteral("四川省"));
            return 1;  // accepted with the city tab still "类别1"
        });
        d->placeButton()->click();
        QCOMPARE(d->placeField()->text(), QStringLiteral("四川省"));

        fx->answerNextModal([](QDialog *dlg) {
            qobject_cast<TextPathDlg *>(dlg)->pathWidget()->chooseItem(0, QStringLiteral("北京市"));
            return 0;  // cancelled
        });
        d->placeButton()->click();
        QCOMPARE(d->placeField()->text(), QStringLiteral("四川省"));
    }

    void placeRowsNamedLikeATabPlaceholder()
    {
        writePlaceSet({{QStringLiteral("类别1"), QString(), QStringLiteral("1")},
                       {QStringLiteral("甲区"), QStringLiteral("1"), QStringLiteral("2")}});
        auto d = made([] { return new TQdtjyjc_Yxys; });
        fx->answerNextModal([](QDialog *dlg) {
            auto *w = qobject_cast<TextPathDlg *>(dlg)->pathWidget();
            w->chooseItem(1, QStringLiteral("甲区"));
            return 1;
        });
        d->placeButton()->click();
        QCOMPARE(d->placeField()->text(), QStringLiteral("甲区"));
    }

    void noSecondLevelIsInvalidData()
    {
        writePlaceSet({{QStringLiteral("孤省"), QString(), QStringLiteral("1")},
                       {QStringLiteral("乙省"), QString(), QStringLiteral("2")},
                       {QStringLiteral("乙市"), QStringLiteral("2"), QStringLiteral("3")}});
        auto d = made([] { return new TQdtjyjc_Yxys; });
        d->placeField()->setText(QStringLiteral("四川省"));
        d->placeButton()->click();
        QCOMPARE(fx->messageTexts(), QStringList{QStringLiteral("数据无效！")});
        QCOMPARE(fx->messages().first().kind, 3);
        QCOMPARE(fx->messages().first().parent.data(), static_cast<QWidget *>(d.get()));
        QVERIFY(fx->modalRuns().isEmpty());
        QCOMPARE(d->placeField()->text(), QStringLiteral("四川省"));
    }

    void unreadableDictionaryIsReportedUnderTheVariant_data()
    {
        QTest::addColumn<Factory>("make");
        QTest::addColumn<QString>("report");
        QTest::newRow("TQdtjyjc_Yxys") << Factory([] { return new TQdtjyjc_Yxys; })
                                       << "Qddjyjc:\\d+ TQdtjyjc_Yxys::pickPlace";
        QTest::newRow("TVelQddjjc_Yxys") << Factory([] { return new TVelQddjjc_Yxys; })
                                         << "VelQddjjc:\\d+ TVelQddjjc_Yxys::pickPlace";
        QTest::newRow("TCloudCLDialog_Yxys") << Factory([] { return new TCloudCLDialog_Yxys; })
                                             << "CloudCLDialog:\\d+ TCloudCLDialog_Yxys::pickPlace";
    }
    void unreadableDictionaryIsReportedUnderTheVariant()
    {
        QFETCH(Factory, make);
        QFETCH(QString, report);
        QFile file(HostDatabasePath(QStringLiteral("IDTDICTMIDDLE")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(4096, 'x'));
        file.close();
        auto d = made(make);
        d->pickPlace();
        QVERIFY(fx->modalRuns().isEmpty());
        QCOMPARE(d->placeField()->text(), QStringLiteral("无"));
        const QStringList reports = fx->exceptionReports();
        QCOMPARE(reports.size(), 1);
        QVERIFY2(reports.first().contains(QRegularExpression(report + QStringLiteral("\\)$"))), qPrintable(reports.first()));
    }

    void clearButton_data()
    {
        slotVariants();
    }
    void clearButton()
    {
        QFETCH(Factory, make);
        auto d = made(make);
        d->setPlaceIdText(QStringLiteral("510106"));
        d->placeField()->setText(QStringLiteral("四川省成都市"));
        d->clearButton()->click();
        QCOMPARE(d->placeField()->text(), QStringLiteral("无"));
        QVERIFY(d->placeIdText().isEmpty());

        QSignalSpy edits(d->placeField(), &QLineEdit::textChanged);
        d->setPlaceIdText(QStringLiteral("x"));
        d->clearButton()->click();
        QCOMPARE(d->placeField()->text(), QStringLiteral("无"));
        QCOMPARE(edits.count(), 0);
        QVERIFY(d->placeIdText().isEmpty());
    }

    void signalOnlyOnConfirm_data()
    {
        slotVariants();
    }
    void signalOnlyOnConfirm()
    {
        QFETCH(Factory, make);
        auto d = made(make);
        d->placeField()->setText(QStringLiteral("四川省成都市金牛区"));
        QSignalSpy spy(d.get(), &InfluenceFactorDialog::signalTimeAndPath);
        d->show();
        d->closeButton()->click();
        QCOMPARE(spy.count(), 0);
        QVERIFY(!d->isVisible());
        QCOMPARE(d->result(), int(QDialog::Rejected));
        QVERIFY(!d->isConfirmed());

        d->show();
        d->confirmButton()->click();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("2024年03月"));
        QCOMPARE(spy.at(0).at(1).toString(), QStringLiteral("四川省成都市金牛区"));
        QVERIFY(!d->isVisible());
        QCOMPARE(d->result(), int(QDialog::Accepted));
        QVERIFY(d->isConfirmed());
    }

    void ownerWiredVariantsDoNothingByThemselves_data()
    {
        QTest::addColumn<Factory>("make");
        QTest::newRow("TVelDqqdznzj_Yxys") << Factory([] { return new TVelDqqdznzj_Yxys; });
        QTest::newRow("TCloudCLDialog_Yxys") << Factory([] { return new TCloudCLDialog_Yxys; });
    }
    void ownerWiredVariantsDoNothingByThemselves()
    {
        QFETCH(Factory, make);
        auto d = made(make);
        QSignalSpy spy(d.get(), &InfluenceFactorDialog::signalTimeAndPath);
        d->placeField()->setText(QStringLiteral("四川省"));
        for (QPushButton *b : {d->timeButton(), d->clearButton(), d->confirmButton()})
            if (b)
                b->click();
        QCOMPARE(spy.count(), 0);
        QVERIFY(fx->modalRuns().isEmpty());
        QCOMPARE(d->placeField()->text(), QStringLiteral("四川省"));

        // What an owner wires in is the shared behaviour.
        QObject::connect(d->confirmButton(), &QPushButton::clicked, d.get(), &InfluenceFactorDialog::confirm);
        d->confirmButton()->click();
        QCOMPARE(spy.count(), 1);
    }
};

QTEST_MAIN(TestInfluenceFactorDialog)
#include "tst_influencefactordialog.moc"
