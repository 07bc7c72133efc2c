#include "hosttestcase.h"

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

namespace {
using Factory = std::function<InfluenceFactorDialog *()>;

QStringList texts(const QWidget *dialog)
{
    QStringList out;
    for (const QLabel *l : dialog->findChildren<QLabel *>())
        out << l->text();
    for (const QPushButton *b : dialog->findChildren<QPushButton *>())
        if (!b->text().isEmpty())
            out << b->text();
    return out;
}

// A place set whose rows the test chooses: name, parent rownum, rownum.
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

class TestInfluenceFactorDialog : public HostTestCase
{
    Q_OBJECT
private:
    static std::unique_ptr<InfluenceFactorDialog> made(const Factory &make)
    {
        std::unique_ptr<InfluenceFactorDialog> d(make());
        d->setComSjText(QStringLiteral("2024年03月"));
        d->CreateUI();
        return d;
    }

private slots:
    void variants_data()
    {
        QTest::addColumn<Factory>("make");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("styled");
        QTest::addColumn<bool>("ownSlots");
        const QString spaced = QStringLiteral("SELECT * FROM subset_dd WHERE sid = '%1';");
        QTest::newRow("TVelQddjjc_Yxys") << Factory([] { return new TVelQddjjc_Yxys; })
                                         << QStringList{"时间：", "地点:", "修改", "修改", "清除", "确定", "关闭"} << spaced
                                         << true << true;
        QTest::newRow("TQdtjyjc_Yxys") << Factory([] { return new TQdtjyjc_Yxys; })
                                       << QStringList{"时间：", "地点:", "修改", "修改", "清空", "确定", "关闭"}
                                       << "SELECT *FROM subset_dd WHERE sid = '%1';" << false << true;
        QTest::newRow("TVelDqqdznzj_Yxys") << Factory([] { return new TVelDqqdznzj_Yxys; })
                                           << QStringList{"时间：", "地点:", "修改", "确定", "关闭"} << spaced << false
                                           << false;
        QTest::newRow("TCloudCLDialog_Yxys") << Factory([] { return new TCloudCLDialog_Yxys; })
                                             << QStringList{"时间:", "地点:", "清空", "确定", "取消"} << spaced << false
                                             << false;
    }
    void variants()
    {
        QFETCH(Factory, make);
        QFETCH(QStringList, texts);
        QFETCH(bool, styled);
        QFETCH(bool, ownSlots);
        auto d = made(make);
        QStringList shown = ::texts(d->clientWidget());
        shown.removeAll(QString());
        QCOMPARE(shown, texts);
        QTEST(d->layoutConfig().placeQuery, "query");
        QLineEdit *comSj = d->timeField(), *comDd = d->placeField();
        QCOMPARE((QStringList{comSj->objectName(), comDd->objectName()}), (QStringList{"comSj", "comDd"}));
        QVERIFY(comSj->isReadOnly() && comDd->isReadOnly());
        QCOMPARE((QStringList{comSj->text(), comDd->text()}), (QStringList{"2024年03月", "无"}));
        QCOMPARE(d->syncBox()->text(), QStringLiteral("同步修改工程设置表相应内容"));
        QVERIFY(d->getChecked());
        const QString text = d->palette().color(QPalette::WindowText).name();
        const QString bg = d->palette().color(QPalette::Base).name();
        const QString sheet = QStringLiteral("#%3{color:%1;background:%2;border:1px solid %1;}");
        for (QLineEdit *field : {comSj, comDd})
            QCOMPARE(field->styleSheet(), styled ? sheet.arg(text, bg, field->objectName()) : QString());

        // The buttons: the variant's own slots, or nothing until the owner wires them.
        QSignalSpy spy(d.get(), &InfluenceFactorDialog::signalTimeAndPath);
        QSignalSpy edits(comDd, &QLineEdit::textChanged);
        d->setPlaceIdText(QStringLiteral("510106"));
        comDd->setText(QStringLiteral("四川省成都市"));
        if (QPushButton *clear = d->clearButton()) {
            clear->click();
            clear->click(); // already "无": no second change
        }
        QCOMPARE(edits.count(), d->clearButton() && ownSlots ? 2 : 1);
        QCOMPARE(d->placeIdText().isEmpty(), ownSlots && d->clearButton());
        d->show();
        d->closeButton()->click();
        QVERIFY(!d->isVisible());
        QCOMPARE(d->result(), int(QDialog::Rejected));
        if (!ownSlots)
            connect(d->confirmButton(), &QPushButton::clicked, d.get(), &InfluenceFactorDialog::confirm);
        // The month picker, primed with the field: chosen, then cancelled.
        QStringList primed;
        for (const int answer : {int(XmgkTime::Chosen), int(XmgkTime::Cancelled)}) {
            fx->answerNextModal([&primed, answer](QDialog *dlg) {
                auto *picker = qobject_cast<XmgkTime *>(dlg);
                primed << picker->GetTimeData();
                picker->chooseMonth(answer == XmgkTime::Chosen ? 2023 : 2020, 7);
                return answer;
            });
            if (d->timeButton())
                d->timeButton()->click();
        }
        QCOMPARE(primed, (ownSlots ? QStringList{"2024年03月", "2023年07月"} : QStringList()));
        QCOMPARE(d->findChildren<XmgkTime *>().size(), 0); // gone once answered
        d->show();
        d->confirmButton()->click();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0), (QList<QVariant>{ownSlots ? "2023年07月" : "2024年03月", comDd->text()}));
        QVERIFY(!d->isVisible() && d->isConfirmed());
        QCOMPARE(d->result(), int(QDialog::Accepted));
    }

    void placePicker_data()
    {
        QTest::addColumn<QList<QStringList>>("rows"); // empty: the host's dictionary
        QTest::addColumn<QStringList>("choices");     // one item per tab, from the first
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QStringList>("messages");
        const QList<QStringList> host;
        QTest::newRow("three levels") << host << QStringList{"四川省", "成都市", "金牛区"} << 1 << "四川省成都市金牛区"
                                      << QStringList();
        QTest::newRow("second tab left as 类别1") << host << QStringList{"四川省"} << 1 << "四川省" << QStringList();
        QTest::newRow("cancelled") << host << QStringList{"北京市"} << 0 << "无" << QStringList();
        QTest::newRow("no second level under the first")
            << QList<QStringList>{{"孤省", "", "1"}, {"乙省", "", "2"}, {"乙市", "2", "3"}} << QStringList() << 0 << "无"
            << QStringList{"数据无效！"};
    }
    void placePicker()
    {
        QFETCH(QList<QStringList>, rows);
        QFETCH(QStringList, choices);
        QFETCH(int, answer);
        QFETCH(QStringList, messages);
        if (!rows.isEmpty())
            writePlaceSet(rows);
        auto d = made([] { return new TVelQddjjc_Yxys; });
        QStringList seen;
        fx->answerNextModal([&](QDialog *dlg) {
            auto *picker = qobject_cast<TextPathDlg *>(dlg);
            TextPathWidget *w = picker->pathWidget();
            seen << picker->caption() << w->tabTitle(0) << QString::number(w->tabItems(0).size()) << w->tabTitle(1)
                 << w->tabItems(1);
            for (int tab = 0; tab < choices.size(); ++tab)
                w->chooseItem(tab, choices.at(tab));
            return answer;
        });
        d->placeButton()->click();
        QTEST(d->placeField()->text(), "shown");
        QCOMPARE(fx->messageTexts(), messages);
        if (!messages.isEmpty()) {
            QCOMPARE(fx->messages().first().kind, 3);
            QCOMPARE(fx->messages().first().parent.data(), static_cast<QWidget *>(d.get()));
            QVERIFY(fx->modalRuns().isEmpty());
        } else {
            QCOMPARE(seen, (QStringList{"工程地点选择", "北京市", "31", "类别1", "市辖区"}));
        }
    }

    // Reported as the variant's pickPlace under its dialog's site.
    void unreadableDictionaryIsReportedUnderTheVariant_data()
    {
        QTest::addColumn<Factory>("make");
        QTest::addColumn<QString>("site");
        QTest::newRow("TQdtjyjc_Yxys") << Factory([] { return new TQdtjyjc_Yxys; }) << "Qddjyjc";
        QTest::newRow("TVelQddjjc_Yxys") << Factory([] { return new TVelQddjjc_Yxys; }) << "VelQddjjc";
        QTest::newRow("TCloudCLDialog_Yxys") << Factory([] { return new TCloudCLDialog_Yxys; }) << "CloudCLDialog";
    }
    void unreadableDictionaryIsReportedUnderTheVariant()
    {
        QFETCH(Factory, make);
        QFETCH(QString, site);
        QFile file(HostDatabasePath(QStringLiteral("IDTDICTMIDDLE")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(4096, 'x'));
        file.close();
        auto d = made(make);
        d->pickPlace();
        QVERIFY(fx->modalRuns().isEmpty());
        QCOMPARE(d->placeField()->text(), QStringLiteral("无"));
        QCOMPARE(fx->exceptionReports().size(), 1);
        const QString report = QStringLiteral("%1:\\d+ %2::pickPlace\\)$").arg(site, QTest::currentDataTag());
        QVERIFY2(fx->exceptionReports().first().contains(QRegularExpression(report)),
                 qPrintable(fx->exceptionReports().first()));
    }
};

QTEST_MAIN(TestInfluenceFactorDialog)
#include "tst_influencefactordialog.moc"
