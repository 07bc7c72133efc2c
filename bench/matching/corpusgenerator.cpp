#include "corpusgenerator.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace {

QJsonArray readItems(const QString &path, QString *error)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot open %1").arg(path);
        return {};
    }
    return QJsonDocument::fromJson(f.readAll()).object().value(QStringLiteral("items")).toArray();
}

QStringList strings(const QJsonValue &v)
{
    QStringList out;
    for (const QJsonValue &x : v.toArray())
        out << x.toString();
    return out;
}

const int kSizes[] = {15, 20, 25, 32, 40, 50, 65, 80, 100, 125, 150, 200, 250, 300};

} // namespace

bool CorpusGenerator::load(const QString &dataDir, QString *error)
{
    const QJsonArray std = readItems(dataDir + QStringLiteral("/standard-bills/gb50856-2024-installation.json"), error);
    for (const QJsonValue &v : std) {
        const QJsonObject o = v.toObject();
        m_standards.push_back({o.value(QStringLiteral("code")).toString(), o.value(QStringLiteral("name")).toString(),
                               o.value(QStringLiteral("unit")).toString(), strings(o.value(QStringLiteral("features"))),
                               strings(o.value(QStringLiteral("work_content")))});
    }
    const QRegularExpression line(QStringLiteral("([\\x{4e00}-\\x{9fff}、，,（）()]+)[:：]([^\\s:：]+)"));
    const QStringList books = QDir(dataDir + QStringLiteral("/project-bills")).entryList({QStringLiteral("*.json")});
    for (const QString &book : books) {
        for (const QJsonValue &v : readItems(dataDir + QStringLiteral("/project-bills/") + book, error)) {
            const QJsonObject o = v.toObject();
            const QString name = o.value(QStringLiteral("bill_name")).toString();
            const QString text = o.value(QStringLiteral("bill_text")).toString();
            m_projects.push_back({name, text.startsWith(name) ? text.mid(name.size()).trimmed() : text,
                                  strings(o.value(QStringLiteral("quota_names")))});
            auto it = line.globalMatch(text);
            while (it.hasNext()) {
                const auto m = it.next();
                m_values[m.captured(1)] << m.captured(2);
                m_allValues << m.captured(2);
            }
        }
    }
    if (m_standards.isEmpty() || m_projects.isEmpty() || m_allValues.isEmpty()) {
        if (error->isEmpty())
            *error = QStringLiteral("no bills found under %1").arg(dataDir);
        return false;
    }
    return true;
}

QString CorpusGenerator::value(const QString &label)
{
    const auto it = m_values.constFind(label);
    if (it != m_values.constEnd() && chance(70))
        return perturbNumbers(it->at(pick(it->size())));
    QString v = m_allValues.at(pick(m_allValues.size()));
    if (chance(40))
        v += QStringLiteral(" DN%1").arg(kSizes[pick(int(sizeof kSizes / sizeof *kSizes))]);
    return perturbNumbers(v);
}

QString CorpusGenerator::perturbNumbers(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("\\d+"));
    QString out;
    int last = 0;
    auto it = number.globalMatch(text);
    while (it.hasNext()) {
        const auto m = it.next();
        out += text.midRef(last, m.capturedStart() - last);
        out += chance(50) ? m.captured() : QString::number(kSizes[pick(int(sizeof kSizes / sizeof *kSizes))]);
        last = m.capturedEnd();
    }
    out += text.midRef(last);
    return out;
}

void CorpusGenerator::fill(BillRecord &r)
{
    const Standard &s = m_standards.at(pick(m_standards.size()));
    r.code = s.code + QStringLiteral("%1").arg(1 + pick(20), 3, 10, QLatin1Char('0'));
    r.unit = s.unit;
    if (chance(25)) {
        // A real project bill with other sizes.
        const Project &p = m_projects.at(pick(m_projects.size()));
        r.name = p.name;
        r.features = perturbNumbers(p.features);
        r.quotaNames = p.quotaNames;
        if (chance(50))
            r.code.clear();
        return;
    }
    r.name = s.name;
    QStringList lines;
    for (const QString &label : s.features)
        if (lines.size() < 5 && chance(60))
            lines << label + QStringLiteral("：") + value(label);
    if (lines.isEmpty())
        lines << QStringLiteral("规格：") + value(QStringLiteral("规格"));
    r.features = lines.join(QLatin1Char('\n'));
    if (chance(50))
        r.workContent = s.work.join(QLatin1Char('\n'));
}

BillRecord CorpusGenerator::next(qint64 id)
{
    BillRecord r;
    r.id = id;
    r.payload = id;
    fill(r);
    if (chance(15)) {
        r.source = 1;
    } else {
        r.source = 2;
        r.projectId = QStringLiteral("p%1").arg(pick(2000));
    }
    return r;
}

BillQuery CorpusGenerator::nextQuery()
{
    BillRecord r;
    fill(r);
    BillQuery q;
    q.code = r.code.left(9);
    q.name = r.name;
    q.unit = r.unit;
    q.features = r.features;
    q.workContent = r.workContent;
    return q;
}
