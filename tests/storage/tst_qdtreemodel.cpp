#include "hosttestcase.h"

#include <storage/qdtreeitem.h>
#include <storage/qdtreemodel.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

namespace {
int s_alive = 0;

// Counts live items so that subtree deletion can be observed.
class CountedItem : public QDTreeItem
{
public:
    CountedItem(const QString &text, QDTreeItem *parent)
        : QDTreeItem(node(text), parent)
    {
        ++s_alive;
    }
    ~CountedItem() override { --s_alive; }

    static QDTreeNode node(const QString &text)
    {
        QDTreeNode n;
        n.text = n.name = text;
        n.id = "id-" + text;
        return n;
    }
};

QDTreeNode chapter(const QString &text, const QString &id)
{
    QDTreeNode n;
    n.text = n.name = text;
    n.id = id;
    return n;
}
}

class TestQDTreeModel : public HostTestCase
{
    Q_OBJECT
private slots:
    void init()
    {
        HostTestCase::init();
        s_alive = 0;
    }

    void itemsOwnTheirSubtree()
    {
        auto *top = new CountedItem("A", nullptr);
        auto *mid = new CountedItem("A1", top);
        new CountedItem("A1a", mid);
        new CountedItem("A1b", mid);
        new CountedItem("A2", top);
        CountedItem stranger("S", nullptr);
        top->removeChild(&stranger); // not a child: nothing happens
        top->removeChild(nullptr);
        QCOMPARE(s_alive, 6);
        top->removeChild(mid);
        QCOMPARE(s_alive, 3);
        QCOMPARE(top->childCount(), 1);
        QCOMPARE(top->child(0)->data().text, QStringLiteral("A2"));
        delete top;
        QCOMPARE(s_alive, 1);
    }

    void rowAndChildLookups()
    {
        QDTreeItem root;
        QCOMPARE(root.row(), 0);
        auto *a = new QDTreeItem(chapter("A", "1"), &root);
        auto *b = new QDTreeItem(&root);
        auto *c = new QDTreeItem(chapter("C", "3"), nullptr);
        root.insertChild(1, c);
        QCOMPARE(root.children(), (QList<QDTreeItem *>{a, c, b}));
        QCOMPARE((QList<int>{a->row(), c->row(), b->row()}), (QList<int>{0, 1, 2}));
        QCOMPARE(c->parent(), &root);
        QVERIFY(!root.child(3) && !root.child(-1));
        QVERIFY(b->data().text.isEmpty());
    }

    void copySharesChildrenAndDeletesThemOnce()
    {
        auto *source = new CountedItem("A", nullptr);
        auto *child = new CountedItem("A1", source);
        {
            QDTreeItem copy(*source);
            QCOMPARE(copy.data().text, QStringLiteral("A"));
            QCOMPARE(copy.child(0), child);
            QCOMPARE(copy.parent(), source->parent());
            // The source does not list the copy as a child of anything.
            QDTreeItem other;
            other = copy;
            QCOMPARE(other.child(0), child);
        }
        QCOMPARE(s_alive, 2);
        // A copy that names a parent which does not list it has no row.
        QDTreeItem orphan(*child);
        QCOMPARE(orphan.parent(), source);
        QCOMPARE(orphan.row(), -1);
        delete source;
        QCOMPARE(s_alive, 0);
    }

    // What the chapter tree shows: the root is never a row, one read-only
    // column, the name with its tool tip, the id behind it, the header.
    void whatTheTreeShows()
    {
        QDTreeModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.getRootNode()->data().text = "根";
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("根"));
        model.setHeaderText("章节");
        QDTreeItem *a = model.appendNode(nullptr, chapter("土石方工程", "64a1"));
        QDTreeItem *a1 = model.appendNode(a, chapter("土方工程", "64a2"));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.columnCount(), 1);
        QVERIFY(!model.indexForTreeItem(model.getRootNode()).isValid());
        QCOMPARE(model.indexForTreeItem(a1).parent(), model.index(0, 0));
        QCOMPARE(model.itemForIndex(model.indexForTreeItem(a1)), a1);
        const QModelIndex ia = model.index(0, 0);
        QCOMPARE((QStringList{ia.data().toString(), ia.data(Qt::ToolTipRole).toString(), ia.data(Qt::WhatsThisRole).toString()}),
                 (QStringList{"土石方工程", "土石方工程", "64a1"}));
        QVERIFY(!ia.data(Qt::EditRole).isValid() && !ia.data(Qt::CheckStateRole).isValid());
        QCOMPARE(model.flags(ia), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("章节"));
        QVERIFY(!model.headerData(0, Qt::Vertical).isValid() && !model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
    }

    void lazyPlaceholderIsReplacedUnderTheTester()
    {
        QDTreeModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QDTreeItem *a = model.appendNode(nullptr, chapter("A", "1"));
        QDTreeItem *b = model.appendNode(nullptr, chapter("B", "2"));
        model.appendNode(a, QDTreeNode()); // placeholder so that the arrow shows
        model.appendNode(b, QDTreeNode());
        QCOMPARE(model.rowCount(model.indexForTreeItem(a)), 1);

        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        const QList<QDTreeItem *> fetched = model.setChildren(
            a, {chapter("A1", "11"), chapter("A2", "12")});
        QCOMPARE(removed.count(), 1);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(fetched.size(), 2);
        const QModelIndex ia = model.indexForTreeItem(a);
        QCOMPARE(model.rowCount(ia), 2);
        QCOMPARE(model.index(1, 0, ia).data(Qt::WhatsThisRole).toString(), QStringLiteral("12"));

        model.appendNode(fetched.at(0), QDTreeNode());
        model.removeItem(fetched.at(0));
        QCOMPARE(model.rowCount(ia), 1);
        QCOMPARE(model.index(0, 0, ia).data().toString(), QStringLiteral("A2"));
        model.setChildren(b, {});
        QCOMPARE(model.rowCount(model.indexForTreeItem(b)), 0);
        model.removeItem(model.getRootNode()); // never removable
        QCOMPARE(model.rowCount(), 2);
        model.clear();
        QCOMPARE(model.rowCount(), 0);
    }
};

QTEST_MAIN(TestQDTreeModel)
#include "tst_qdtreemodel.moc"
