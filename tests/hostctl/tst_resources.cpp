#include <resources/veloraresources.h>

#include <QFile>
#include <QIcon>
#include <QImage>
#include <QImageReader>
#include <QMovie>
#include <QtTest>

// Every image path the dialogs name must resolve to a drawable resource.
class TestResources : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { veloraInitResources(); }

    void imagesLoad_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QSize>("size");
        const QString v = QStringLiteral(":/Image/Velostra/");
        for (const char *name : {"s_icon_qdycc", "s_icon_djyjc", "s_icon_znyzj", "s_icon_xmytz", "s_icon_cjycc"})
            QTest::newRow(name) << v + QLatin1String(name) + QStringLiteral(".svg") << QSize(32, 32);
        for (const char *name : {"lastqd", "lastqd-HOVER", "nextqd", "nextqd-HOVER"})
            QTest::newRow(name) << v + QLatin1String(name) + QStringLiteral(".svg") << QSize(24, 24);
        for (const char *name : {"file", "folder", "openFolder"})
            QTest::newRow(name) << QStringLiteral(":/Image/svg/%1.svg").arg(QLatin1String(name)) << QSize(16, 16);
        QTest::newRow("arrowTop") << QStringLiteral(":/res/arrowTop.png") << QSize(12, 12);
        QTest::newRow("arrowBottom") << QStringLiteral(":/res/arrowBottom.png") << QSize(12, 12);
    }

    void imagesLoad()
    {
        QFETCH(QString, path);
        QFETCH(QSize, size);
        QVERIFY2(QFile::exists(path), qPrintable(path));
        QImageReader reader(path);
        const QImage image = reader.read();
        QVERIFY2(!image.isNull(), qPrintable(reader.errorString()));
        QCOMPARE(image.size(), size);
        // Something is drawn: not every pixel is transparent.
        bool drawn = false;
        for (int y = 0; y < image.height() && !drawn; ++y)
            for (int x = 0; x < image.width() && !drawn; ++x)
                drawn = qAlpha(image.pixel(x, y)) > 128;
        QVERIFY(drawn);
    }

    void arrowsPointTheirWay()
    {
        // The expanded arrow points down: its tip row (lower) is narrower than
        // the row at the top of the stroke; the collapsed arrow is its mirror.
        const QImage down(QStringLiteral(":/res/arrowBottom.png"));
        const QImage up(QStringLiteral(":/res/arrowTop.png"));
        QVERIFY(qAlpha(down.pixel(6, 7)) > 128);
        QVERIFY(qAlpha(down.pixel(6, 4)) < 64);
        QVERIFY(qAlpha(up.pixel(6, 4)) > 128);
        QVERIFY(qAlpha(up.pixel(6, 7)) < 64);
    }

    void loadingAnimationPlays()
    {
        QMovie movie(QStringLiteral(":/Image/Velostra/loading-YFAUpdata.gif"));
        QVERIFY(movie.isValid());
        QCOMPARE(movie.frameCount(), 12);
        QVERIFY(movie.jumpToFrame(0));
        const QImage first = movie.currentImage().convertToFormat(QImage::Format_ARGB32);
        for (int i = 0; i < 6; ++i)
            QVERIFY(movie.jumpToNextFrame());
        const QImage middle = movie.currentImage().convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(first.size(), QSize(32, 32));
        QVERIFY(first != middle);
        // Corners are transparent, the top dot is drawn.
        QCOMPARE(qAlpha(first.pixel(0, 0)), 0);
        QVERIFY(qAlpha(first.pixel(16, 5)) == 255);
        QVERIFY(movie.nextFrameDelay() > 0);
    }
};

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
