#include "hosttestcase.h"

#include <hostapi/exceptionguard.h>
#include <hostapi/functionname.h>
#include <hostapi/guardsite.h>

#include <QtTest>

#include <stdexcept>

namespace {
// A component reporting under its owner, as the server choice does.
struct Component
{
    GuardSite site;
    static const int line = __LINE__ + 1;
    int fail() { return GUARDED(site, [] () -> int { throw std::runtime_error("boom"); }); }
};

class Owner : public QObject
{
    Q_OBJECT
public:
    Component part{GuardSite("Qddjyjc", this)};
    const int line = __LINE__ + 1;
    void NextStep() { GUARDED("Qddjyjc", [] { throw 42; }); }
};

class TInitial : public Owner
{
    Q_OBJECT
};
}

class TestExceptionGuard : public HostTestCase
{
    Q_OBJECT
private slots:
    void functionNames_data()
    {
        QTest::addColumn<QString>("pretty");
        QTest::addColumn<QString>("qualified");
        QTest::addColumn<QString>("member");
        QTest::newRow("method") << "void TQdtjyjc::NextStep()" << "TQdtjyjc::NextStep" << "NextStep";
        QTest::newRow("pointer, const") << "LtdInfo* TInitial::getCurrServer() const" << "TInitial::getCurrServer"
                                        << "getCurrServer";
        QTest::newRow("template return") << "std::optional<std::pair<int, int> > A::B::f(const QMap<int, int>&)"
                                         << "A::B::f" << "f";
        QTest::newRow("static") << "static int Foo::count()" << "Foo::count" << "count";
        QTest::newRow("constructor") << "TQdtjyjc::TQdtjyjc(QWidget*)" << "TQdtjyjc::TQdtjyjc" << "TQdtjyjc";
        QTest::newRow("destructor") << "TQdtjyjc::~TQdtjyjc()" << "TQdtjyjc::~TQdtjyjc" << "~TQdtjyjc";
        QTest::newRow("operator==") << "bool Foo::operator==(const Foo&) const" << "Foo::operator==" << "operator==";
        QTest::newRow("operator()") << "void Foo::operator()(int)" << "Foo::operator()" << "operator()";
        QTest::newRow("conversion") << "Foo::operator bool() const" << "Foo::operator bool" << "operator bool";
        QTest::newRow("class template") << "T Box<T>::value() const [with T = int]" << "Box<T>::value" << "value";
        QTest::newRow("gcc lambda") << "TQdtjyjc::CreateUI()::<lambda()>" << "TQdtjyjc::CreateUI" << "CreateUI";
        QTest::newRow("clang lambda") << "auto TQdtjyjc::CreateUI()::(anonymous class)::operator()() const"
                                      << "TQdtjyjc::CreateUI" << "CreateUI";
        QTest::newRow("anonymous namespace") << "ProjectSettingsInfo {anonymous}::withPlaceCode(ProjectSettingsInfo)"
                                             << "withPlaceCode" << "withPlaceCode";
        QTest::newRow("function pointer parameter") << "void Foo::set(void (*)(int))" << "Foo::set" << "set";
        QTest::newRow("free function") << "int main(int, char**)" << "main" << "main";
        QTest::newRow("bare name") << "slotSearch" << "slotSearch" << "slotSearch";
    }
    void functionNames()
    {
        QFETCH(QString, pretty);
        const FunctionName name(pretty.toUtf8().constData());
        QTEST(name.qualified(), "qualified");
        QTEST(name.member(), "member");
    }

    void reportsCarryTheCallersLocation()
    {
        Owner owner;
        owner.NextStep();
        const int line = __LINE__ + 1;
        QCOMPARE(GUARDED_OR(-1, "Znyzj", [] () -> int { throw std::logic_error("x"); }), -1);
        QCOMPARE(GUARDED_OR(-1, "Znyzj", [] { return 7; }), 7);
        // A component reports under its owner's class, the most derived one.
        auto *page = new TInitial;
        QCOMPARE(page->part.fail(), 0);
        QStringList reports;
        for (const QString &r : fx->exceptionReports())
            reports << r.section(QStringLiteral(" exception: "), 1);
        QCOMPARE(reports, (QStringList{QStringLiteral("未知异常 (Qddjyjc:%1 Owner::NextStep)").arg(owner.line),
                                       QStringLiteral("x (Znyzj:%1 TestExceptionGuard::reportsCarryTheCallersLocation)")
                                           .arg(line),
                                       QStringLiteral("boom (Qddjyjc:%1 TInitial::fail)").arg(Component::line)}));
        // A detached site keeps the class for another thread, owner or not.
        const GuardSite detached = page->part.site.detached();
        delete page;
        QCOMPARE(detached.function("void X::requestServerList()"), QStringLiteral("TInitial::requestServerList"));
        QCOMPARE(detached.owner(), nullptr);
    }
};

QTEST_GUILESS_MAIN(TestExceptionGuard)
#include "tst_exceptionguard.moc"
