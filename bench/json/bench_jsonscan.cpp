// Times JsonNesting::scan against QJsonDocument::fromJson on bodies shaped
// like the largest real messages: a bill upload and a matching reply.
#include <hostapi/jsonnesting.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QTextStream>

namespace {

QJsonObject bill(int i)
{
    QJsonArray lines;
    for (int l = 0; l < 6; ++l)
        lines.append(QJsonObject{{"TYPE", l ? "CL" : "DE"}, {"BH", QString("01%1").arg(l)}, {"XMMC", "商品混凝土 C30"},
                                 {"GCL", "1.015"}, {"DW", "m3"}, {"DJ", "412.50"}, {"HJ", "418.69"}});
    return {{"guidb", QString::number(i)}, {"qdbh", "010501004001"}, {"xmmc", "满堂基础"}, {"jldw", "m3"},
            {"xmtz", "1.混凝土种类：商品混凝土\n2.混凝土强度等级：C30"}, {"gznr", "1.模板及支撑制作、安装、拆除"},
            {"zhdj", 512.3}, {"zjlj", QJsonArray{"土建", "混凝土工程"}}, {"zjnr", QJsonObject{{"zjnr", lines}}}};
}

QByteArray body(int bills)
{
    QJsonArray list;
    for (int i = 0; i < bills; ++i)
        list.append(bill(i));
    const QJsonObject data{{"method", "uploadsavingtaskbills"}, {"taskid", "t1"}, {"bills", list}};
    return QJsonDocument(QJsonObject{{"cmd", "cloudSoft"}, {"app_type", 1}, {"data", data}}).toJson(QJsonDocument::Compact);
}

// The best of five batches: the machine is shared, the minimum is the cost.
template <typename F>
double microseconds(int rounds, F f)
{
    double best = 0;
    for (int batch = 0; batch < 5; ++batch) {
        QElapsedTimer t;
        t.start();
        for (int i = 0; i < rounds; ++i)
            f();
        const double each = double(t.nsecsElapsed()) / 1000.0 / rounds;
        best = batch == 0 ? each : qMin(best, each);
    }
    return best;
}

// A pass that only counts brackets (what the check did before it tracked
// keys): the floor any one-pass check pays.
bool bracketsOnly(const QByteArray &text, int limit)
{
    int depth = 0;
    bool inString = false, escaped = false;
    for (const char c : text) {
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > limit)
                return false;
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    out << "| body | bytes | brackets only µs | scan µs | Qt parse µs | scan / parse |\n|---|---|---|---|---|---|\n";
    for (const int bills : {1, 10, 500}) {
        const QByteArray text = body(bills);
        const int rounds = qMax(10, 4000 / bills);
        bool fine = true;
        const double scan = microseconds(rounds, [&] { fine &= JsonNesting::scan(text) == JsonNesting::Verdict::Fine; });
        const double floor = microseconds(rounds, [&] { fine &= bracketsOnly(text, JsonNesting::MaxDepth); });
        int size = 0;
        const double parse = microseconds(rounds, [&] { size += QJsonDocument::fromJson(text).object().size(); });
        if (!fine || size == 0)
            return 1;
        out << "| " << bills << " bill(s) | " << text.size() << " | " << QString::number(floor, 'f', 1) << " | "
            << QString::number(scan, 'f', 1) << " | "
            << QString::number(parse, 'f', 1) << " | " << QString::number(100.0 * scan / parse, 'f', 1) << " % |\n";
    }
    return 0;
}
