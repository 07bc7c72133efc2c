#include "hostfixture.h"

#include <storage/qdtreedelegate.h>
#include <storage/qdtreeitem.h>
#include <storage/qdtreemodel.h>

#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QTreeView>
#include <QtTest>

#include <memory>

namespace {
// Records the state with which item rows are drawn.
class RecordingStyle : public QProxyStyle
{
public:
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        if (element == CE_ItemViewItem)
            states << option->state;
        QProxyStyle::drawControl(element, option, painter, widget);
    }
    mutable QList<QStyle::State> states;
};

QString writeSquare(const QString &dir, const QString &name, const QColor &colour)
{
    QImage image(9, 9, QImage::Format_ARGB32);
    image.fill(colour);
    const QString path = dir + name;
    image.save(path, "PNG");
    return path;
}

QDTreeNode chapter(const QString &text)
{
    QDTreeNode n;
    n.text = text;
    n.name = text;
    n.id = text;
    return n;
}
}

class TestQDTreeDelegate : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    std::unique_ptr<QTreeView> view;
    QDTreeModel *model = nullptr;
    QDTreeDelegate *delegate = nullptr;
    QDTreeItem *withChildren = nullptr;
    QDTreeItem *leaf = nullptr;
    RecordingStyle *style = nullptr;

    QModelIndex parentRow() const { return model->indexForTreeItem(withChildren); }
    QModelIndex leafRow() const { return model->indexForTreeItem(leaf); }
    QPoint arrowCentre(const QModelIndex &index) const
    {
        return delegate->arrowRect(view->visualRect(index)).center();
    }
    void send(QEvent::Type type, const QPoint &pos)
    {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButtons buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, pos, view->viewport()->mapToGlobal(pos), button, buttons, Qt::NoModifier);
        QApplication::sendEvent(view->viewport(), &event);
    }
    QImage paintRow(const QModelIndex &index, QStyle::State extra = QStyle::State_None)
    {
        QImage image(300, 24, QImage::Format_ARGB32);
        image.fill(Qt::white);
        QStyleOptionViewItem option;
        option.initFrom(view->viewport());
        option.widget = view.get();
        option.rect = QRect(0, 0, 300, 24);
        option.state |= QStyle::State_Enabled | extra;
        QPainter painter(&image);
        delegate->paint(&painter, option, index);
        return image;
    }

private slots:
    void init()
    {
        fx = std::make_unique<HostFixture>();
        view = std::make_unique<QTreeView>();
        style = new RecordingStyle;
        style->setParent(view.get());
        view->setStyle(style);
        model = new QDTreeModel(view.get());
        withChildren = model->appendNode(nullptr, chapter(QStringLiteral("土石方工程")));
        model->appendNode(withChildren, QDTreeNode());
        leaf = model->appendNode(nullptr, chapter(QStringLiteral("桩基工程")));
        delegate = new QDTreeDelegate(view.get());
        delegate->setExpandIcon(writeSquare(fx->appDir(), QStringLiteral("down.png"), Qt::red));
        delegate->setcollapseIcon(writeSquare(fx->appDir(), QStringLiteral("up.png"), Qt::blue));
        delegate->setView(view.get());
        view->setModel(model);
        view->setItemDelegate(delegate);
        view->resize(320, 200);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    }
    void cleanup()
    {
        view.reset();
        fx.reset();
    }

    void arrowRectangle_data()
    {
        QTest::addColumn<QRect>("cell");
        QTest::addColumn<QSize>("icon");
        QTest::addColumn<QRect>("arrow");
        QTest::newRow("default 9x9") << QRect(20, 40, 200, 24) << QSize() << QRect(190, 47, 9, 9);
        QTest::newRow("odd height rounds down") << QRect(0, 0, 100, 25) << QSize(12, 10) << QRect(70, 7, 12, 10);
        QTest::newRow("taller icon than row") << QRect(0, 10, 50, 8) << QSize(16, 16) << QRect(20, 6, 16, 16);
    }
    void arrowRectangle()
    {
        QFETCH(QRect, cell);
        QFETCH(QSize, icon);
        QFETCH(QRect, arrow);
        QDTreeDelegate d;
        if (icon.isValid())
            d.setIconSize(icon);
        QCOMPARE(d.arrowRect(cell), arrow);
    }

    void pressOnArrowOfRowWithChildrenEmitsExpanded()
    {
        QSignalSpy spy(delegate, &QDTreeDelegate::expanded);
        send(QEvent::MouseButtonPress, arrowCentre(parentRow()));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toModelIndex(), parentRow());
    }

    void pressElsewhereOrOnLeafArrowDoesNothing()
    {
        QSignalSpy spy(delegate, &QDTreeDelegate::expanded);
        send(QEvent::MouseButtonPress, arrowCentre(leafRow()));
        send(QEvent::MouseButtonPress, view->visualRect(parentRow()).center() - QPoint(60, 0));
        QCOMPARE(spy.count(), 0);
    }

    void pointingHandOnlyOverArrowsOfRowsWithChildren()
    {
        QWidget *viewport = view->viewport();
        send(QEvent::MouseMove, arrowCentre(leafRow()));
        QVERIFY(!viewport->testAttribute(Qt::WA_SetCursor));
        send(QEvent::MouseMove, arrowCentre(parentRow()));
        QVERIFY(viewport->testAttribute(Qt::WA_SetCursor));
        QCOMPARE(viewport->cursor().shape(), Qt::PointingHandCursor);
        send(QEvent::MouseMove, view->visualRect(parentRow()).topLeft() + QPoint(5, 5));
        QVERIFY(!viewport->testAttribute(Qt::WA_SetCursor));
    }

    void arrowDrawnOnlyForRowsWithChildren()
    {
        const QRect arrow = delegate->arrowRect(QRect(0, 0, 300, 24));
        QImage collapsed = paintRow(parentRow());
        QCOMPARE(QColor(collapsed.pixel(arrow.center())), QColor(Qt::blue));
        view->expand(parentRow());
        QImage expanded = paintRow(parentRow());
        QCOMPARE(QColor(expanded.pixel(arrow.center())), QColor(Qt::red));
        QImage plain = paintRow(leafRow());
        const QColor c(plain.pixel(arrow.center()));
        QVERIFY(c != QColor(Qt::red) && c != QColor(Qt::blue));
    }

    void noArrowWithoutAView()
    {
        QDTreeDelegate bare;
        bare.setExpandIcon(fx->appDir() + QStringLiteral("down.png"));
        bare.setcollapseIcon(fx->appDir() + QStringLiteral("up.png"));
        QImage image(300, 24, QImage::Format_ARGB32);
        image.fill(Qt::white);
        QStyleOptionViewItem option;
        option.rect = QRect(0, 0, 300, 24);
        QPainter painter(&image);
        bare.paint(&painter, option, parentRow());
        painter.end();
        QCOMPARE(QColor(image.pixel(bare.arrowRect(option.rect).center())), QColor(Qt::white));
    }

    void focusFrameIsNeverDrawn()
    {
        style->states.clear();
        paintRow(parentRow(), QStyle::State_HasFocus | QStyle::State_Selected);
        QCOMPARE(style->states.size(), 1);
        QVERIFY(!(style->states.at(0) & QStyle::State_HasFocus));
        QVERIFY(style->states.at(0) & QStyle::State_Selected);
    }
};

QTEST_MAIN(TestQDTreeDelegate)
#include "tst_qdtreedelegate.moc"
