#include "hosttestcase.h"

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

QString writeSquare(const QString &path, const QColor &colour)
{
    QImage image(9, 9, QImage::Format_ARGB32);
    image.fill(colour);
    image.save(path, "PNG");
    return path;
}

QDTreeNode chapter(const QString &text)
{
    QDTreeNode n;
    n.text = n.name = n.id = text;
    return n;
}
}

// A chapter tree as the storage dialog shows it: a row with children (its
// arrow drawn with the collapse icon, blue here, or the expand icon, red) and
// a leaf row without an arrow.
class TestQDTreeDelegate : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<QTreeView> view;
    QDTreeModel *model = nullptr;
    QDTreeDelegate *delegate = nullptr;
    RecordingStyle *style = nullptr;

    QModelIndex row(const QString &which) const { return model->index(which == "parent" ? 0 : 1, 0); }
    QPoint arrowCentre(const QModelIndex &index) const { return delegate->arrowRect(view->visualRect(index)).center(); }
    void send(QEvent::Type type, const QPoint &pos)
    {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButtons buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, pos, view->viewport()->mapToGlobal(pos), button, buttons, Qt::NoModifier);
        QApplication::sendEvent(view->viewport(), &event);
    }
    // The colour at the arrow's centre when `painter` draws row `index`.
    QColor arrowColour(const QDTreeDelegate &painter, const QModelIndex &index, QStyle::State extra = QStyle::State_None)
    {
        QImage image(300, 24, QImage::Format_ARGB32);
        image.fill(Qt::white);
        QStyleOptionViewItem option;
        option.initFrom(view->viewport());
        option.widget = view.get();
        option.rect = QRect(0, 0, 300, 24);
        option.state |= QStyle::State_Enabled | extra;
        QPainter p(&image);
        painter.paint(&p, option, index);
        return QColor(image.pixel(painter.arrowRect(option.rect).center()));
    }

private slots:
    void init()
    {
        HostTestCase::init();
        view = std::make_unique<QTreeView>();
        style = new RecordingStyle;
        style->setParent(view.get());
        view->setStyle(style);
        model = new QDTreeModel(view.get());
        QDTreeItem *withChildren = model->appendNode(nullptr, chapter("土石方工程"));
        model->appendNode(withChildren, QDTreeNode());
        model->appendNode(nullptr, chapter("桩基工程"));
        delegate = new QDTreeDelegate(view.get());
        delegate->setExpandIcon(writeSquare(fx->appDir() + "/down.png", Qt::red));
        delegate->setcollapseIcon(writeSquare(fx->appDir() + "/up.png", Qt::blue));
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
        HostTestCase::cleanup();
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
        QDTreeDelegate d;
        if (icon.isValid())
            d.setIconSize(icon);
        QTEST(d.arrowRect(cell), "arrow");
    }

    void arrowAsDrawn_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<bool>("expand");
        QTest::addColumn<bool>("withView");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("collapsed row with children") << "parent" << false << true << QColor(Qt::blue);
        QTest::newRow("expanded row with children") << "parent" << true << true << QColor(Qt::red);
        QTest::newRow("leaf: no arrow") << "leaf" << false << true << QColor(Qt::white);
        QTest::newRow("delegate without a view: no arrow") << "parent" << false << false << QColor(Qt::white);
    }
    void arrowAsDrawn()
    {
        QFETCH(QString, row);
        QFETCH(bool, expand);
        QFETCH(bool, withView);
        QFETCH(QColor, colour);
        if (expand)
            view->expand(this->row(row));
        QDTreeDelegate bare;
        bare.setExpandIcon(fx->appDir() + "/down.png");
        bare.setcollapseIcon(fx->appDir() + "/up.png");
        style->states.clear();
        const QColor seen = arrowColour(withView ? *delegate : bare, this->row(row), QStyle::State_HasFocus | QStyle::State_Selected);
        if (colour == Qt::white) // the row's own background, never an icon
            QVERIFY(seen != QColor(Qt::red) && seen != QColor(Qt::blue));
        else
            QCOMPARE(seen, colour);
        // The row is drawn selected, but never with a focus frame.
        QCOMPARE(style->states.size(), 1);
        QVERIFY(!(style->states.at(0) & QStyle::State_HasFocus) && (style->states.at(0) & QStyle::State_Selected));
    }

    void mouseOverAndOnTheArrow_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<bool>("onArrow");
        QTest::addColumn<bool>("active");
        QTest::newRow("arrow of a row with children") << "parent" << true << true;
        QTest::newRow("elsewhere in that row") << "parent" << false << false;
        QTest::newRow("where a leaf's arrow would be") << "leaf" << true << false;
    }
    void mouseOverAndOnTheArrow()
    {
        QFETCH(QString, row);
        QFETCH(bool, onArrow);
        QFETCH(bool, active);
        const QModelIndex index = this->row(row);
        const QPoint pos = onArrow ? arrowCentre(index) : view->visualRect(index).topLeft() + QPoint(5, 5);
        // The pointing hand shows over the arrow only (and goes again when the
        // mouse leaves it in that row; a leaf's arrow leaves the cursor as it
        // is), and a press there expands.
        if (row == "parent")
            send(QEvent::MouseMove, arrowCentre(index));
        send(QEvent::MouseMove, pos);
        QCOMPARE(view->viewport()->testAttribute(Qt::WA_SetCursor), active);
        if (active)
            QCOMPARE(view->viewport()->cursor().shape(), Qt::PointingHandCursor);
        QSignalSpy spy(delegate, &QDTreeDelegate::expanded);
        send(QEvent::MouseButtonPress, pos);
        QCOMPARE(spy.count(), active ? 1 : 0);
        if (active)
            QCOMPARE(spy.at(0).at(0).toModelIndex(), index);
    }
};

QTEST_MAIN(TestQDTreeDelegate)
#include "tst_qdtreedelegate.moc"
