#include "serviceseed.h"
#include "accountstore.h"
#include "billstore.h"
#include "compositionbuilder.h"
#include "passwordhash.h"
#include "servicedb.h"
#include "tierscope.h"

#include <QDateTime>
#include <QDir>
#include <QHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlQuery>
#include <QVector>

const QString ServiceSeed::DemoUser = QStringLiteral("demo");
const QString ServiceSeed::DemoPassword = QStringLiteral("Velora@2024");

namespace {

const QString kSeedTime = QStringLiteral("2024-06-01T08:00:00Z");

struct SeedUser {
    const char *username;
    const char *displayName;
};

// demo: admin in east, reader in west. zhangsan: writer in east. lisi: admin
// in west. wangwu: no enterprise.
const SeedUser kUsers[] = {
    {"demo", "演示用户"}, {"zhangsan", "张三"}, {"lisi", "李四"}, {"wangwu", "王五"}};

struct ChapterSeed {
    const char *path; // names separated by '/'
};

const ChapterSeed kBuildingChapters[] = {
    {"建筑工程/土石方工程/土方工程"},     {"建筑工程/土石方工程/石方工程"},
    {"建筑工程/土石方工程/回填"},         {"建筑工程/砌筑工程/砖砌体"},
    {"建筑工程/砌筑工程/砌块砌体"},       {"建筑工程/混凝土及钢筋混凝土工程/现浇混凝土基础"},
    {"建筑工程/混凝土及钢筋混凝土工程/现浇混凝土柱"}, {"建筑工程/混凝土及钢筋混凝土工程/钢筋工程"},
    {"装饰工程/楼地面装饰工程/整体面层"}, {"装饰工程/墙柱面装饰工程/墙面抹灰"},
};

const ChapterSeed kInstallChapters[] = {
    {"安装工程/电气设备安装工程/配管配线"}, {"安装工程/电气设备安装工程/电缆安装"},
    {"安装工程/电气设备安装工程/照明器具"}, {"安装工程/给排水采暖燃气工程/给排水管道"},
    {"安装工程/给排水采暖燃气工程/管道附件"}, {"安装工程/消防工程/水灭火系统"},
};

struct MaterialSeed {
    const char *clbm;
    const char *clmc;
    const char *ggxh;
    const char *dw;
    double djhs;   // price including tax, base library
    double taxRate;
    const char *cd;
    const char *cj;
};

const MaterialSeed kMaterials[] = {
    {"01010001", "普通硅酸盐水泥", "P.O 42.5", "t", 480.00, 0.13, "安徽", "海螺水泥"},
    {"01010002", "普通硅酸盐水泥", "P.O 32.5", "t", 430.00, 0.13, "安徽", "海螺水泥"},
    {"04030001", "中砂", "", "m3", 145.00, 0.03, "本地", ""},
    {"04050001", "碎石", "5-31.5mm", "m3", 130.00, 0.03, "本地", ""},
    {"80210001", "预拌混凝土", "C30", "m3", 520.00, 0.03, "本地", "城建商砼"},
    {"80210002", "预拌混凝土", "C20", "m3", 480.00, 0.03, "本地", "城建商砼"},
    {"01010101", "热轧带肋钢筋", "HRB400 Φ12", "t", 4100.00, 0.13, "江苏", "沙钢"},
    {"01010102", "热轧带肋钢筋", "HRB400 Φ25", "t", 3980.00, 0.13, "江苏", "沙钢"},
    {"04130001", "标准砖", "240×115×53", "千块", 520.00, 0.03, "本地", ""},
    {"04150001", "蒸压加气混凝土砌块", "600×240×200", "m3", 265.00, 0.13, "本地", ""},
    {"17010001", "焊接钢管", "DN25", "m", 15.80, 0.13, "天津", "友发"},
    {"17030001", "镀锌钢管", "DN25", "m", 18.60, 0.13, "天津", "友发"},
    {"17250001", "PPR给水管", "De25", "m", 6.80, 0.13, "浙江", "伟星"},
    {"28030001", "铜芯聚氯乙烯绝缘电线", "BV-2.5mm2", "m", 2.35, 0.13, "江苏", "远东"},
    {"28030002", "铜芯聚氯乙烯绝缘电线", "BV-4mm2", "m", 3.70, 0.13, "江苏", "远东"},
    {"28010001", "交联聚乙烯绝缘电力电缆", "YJV-4×25+1×16", "m", 98.50, 0.13, "江苏", "远东"},
    {"29060001", "刚性阻燃管", "PC20", "m", 2.10, 0.13, "广东", "联塑"},
    {"13350001", "SBS改性沥青防水卷材", "3mm", "m2", 28.00, 0.13, "山东", "东方雨虹"},
    {"13010001", "乳胶漆", "内墙", "kg", 16.00, 0.13, "上海", "立邦"},
    {"14030001", "柴油", "0#", "kg", 7.80, 0.13, "", ""},
};

struct PriceLibrarySeed {
    int tier;
    int ownerIndex; // user index for personal, enterprise id otherwise
    const char *id;
    const char *name;
    double factor;
    const char *place;
    const char *time;
    const char *project;
};

}

ServiceSeed::ServiceSeed(const ServiceContext &context)
    : m_context(context)
{
}

bool ServiceSeed::isEmpty()
{
    return m_context.db->scalar(QStringLiteral("SELECT COUNT(*) FROM users"), {}, 0).toInt() == 0;
}

QString ServiceSeed::sharedDataDir()
{
    const QByteArray env = qgetenv("VELORA_DATA_DIR");
    if (!env.isEmpty())
        return QString::fromLocal8Bit(env);
#ifdef VELORA_DATA_DIR
    return QStringLiteral(VELORA_DATA_DIR);
#else
    return QString();
#endif
}

QString ServiceSeed::run(bool full)
{
    seedAccounts();
    seedLibraries();
    seedSampleBills();
    seedPriceLibraries();
    if (full) {
        seedStandardBills();
        seedProjectBills();
    }
    return QStringLiteral("Velora 云服务已创建演示数据。演示账号：%1  密码：%2").arg(DemoUser, DemoPassword);
}

void ServiceSeed::seedAccounts()
{
    AccountStore &accounts = *m_context.accounts;
    m_context.db->write([&] {
        QVector<int> ids;
        for (const SeedUser &u : kUsers)
            ids.append(accounts.createUser(QString::fromUtf8(u.username), QString::fromUtf8(u.displayName),
                                           DemoPassword));
        accounts.createEnterprise(EastEnterprise, QStringLiteral("华东建设集团有限公司"));
        accounts.createEnterprise(WestEnterprise, QStringLiteral("蜀川造价咨询有限公司"));
        accounts.setMember(EastEnterprise, ids.at(0), AccountStore::AdminRole);
        accounts.setMember(WestEnterprise, ids.at(0), AccountStore::ReadRole);
        accounts.setMember(EastEnterprise, ids.at(1), AccountStore::WriteRole);
        accounts.setMember(WestEnterprise, ids.at(2), AccountStore::AdminRole);
    });
}

namespace {

int userIdOf(ServiceDb &db, const char *username)
{
    return db.scalar(QStringLiteral("SELECT id FROM users WHERE username = ?"), {QString::fromUtf8(username)}).toInt();
}

template <size_t N>
void seedChapters(BillStore &store, int libraryId, const ChapterSeed (&paths)[N])
{
    int n = 0;
    for (const ChapterSeed &c : paths) {
        QString parent;
        for (const QString &name : QString::fromUtf8(c.path).split(QLatin1Char('/'))) {
            const QList<BillStore::Chapter> existing = store.chapters(libraryId, parent);
            QString id;
            for (const BillStore::Chapter &e : existing)
                if (e.name == name)
                    id = e.id;
            if (id.isEmpty())
                id = store.createChapter(libraryId, parent, name, QStringLiteral("zj%1-%2").arg(libraryId).arg(++n));
            parent = id;
        }
    }
}

struct SampleBill {
    const char *qdbh;
    const char *xmmc;
    const char *jldw;
    const char *xmtz;
    const char *gznr;
    const char *quotaIds;   // '|' separated
    const char *quotaNames; // '|' separated
    const char *chapter;    // leaf chapter name for library bills
};

const SampleBill kSampleBills[] = {
    {"010101003001", "挖沟槽土方", "m3", "1.土壤类别：三类土\n2.挖土深度：2m以内\n3.弃土运距：1km",
     "1.排地表水\n2.土方开挖\n3.围护(挡土板)及拆除\n4.基底钎探\n5.运输", "1-1-8|1-2-1",
     "人工挖沟槽 三类土 深度2m以内|人工装车 自卸汽车运土方 运距1km以内", "土方工程"},
    {"010103001001", "回填方", "m3", "1.密实度要求：压实系数不小于0.94\n2.填方材料品种：素土",
     "1.运输\n2.回填\n3.压实", "1-1-127", "回填土 夯填", "回填"},
    {"010401003001", "实心砖墙", "m3", "1.砖品种、规格、强度等级：MU10标准砖\n2.墙体类型：外墙\n3.砂浆强度等级：M7.5混合砂浆",
     "1.砂浆制作、运输\n2.砌砖\n3.刮缝\n4.砖压顶砌筑\n5.材料运输", "4-35", "一砖外墙 混合砂浆M7.5", "砖砌体"},
    {"010402001001", "砌块墙", "m3", "1.砌块品种、规格、强度等级：蒸压加气混凝土砌块 600×240×200 A3.5\n2.墙体类型：内墙\n3.砂浆强度等级：M5专用砂浆",
     "1.砂浆制作、运输\n2.砌砖、砌块\n3.勾缝\n4.材料运输", "4-10", "蒸压加气混凝土砌块墙 厚200", "砌块砌体"},
    {"010502001001", "矩形柱", "m3", "1.混凝土种类：预拌混凝土\n2.混凝土强度等级：C30",
     "1.模板及支架(撑)制作、安装、拆除\n2.混凝土制作、运输、浇筑、振捣、养护", "6-190|21-27",
     "预拌混凝土 矩形柱 C30|矩形柱 复合木模板", "现浇混凝土柱"},
    {"010515001001", "现浇构件钢筋", "t", "1.钢筋种类、规格：HRB400 Φ12以内",
     "1.钢筋制作、运输\n2.钢筋安装\n3.焊接(绑扎)", "5-2", "现浇构件 钢筋 HRB400 Φ12以内", "钢筋工程"},
    {"011201001001", "墙面一般抹灰", "m2", "1.墙体类型：砖墙\n2.底层厚度、砂浆配合比：12mm厚1:3水泥砂浆\n3.面层厚度、砂浆配合比：8mm厚1:2.5水泥砂浆",
     "1.基层清理\n2.砂浆制作、运输\n3.底层抹灰\n4.抹面层", "14-8", "砖墙 水泥砂浆 内墙面 12+8mm", "墙面抹灰"},
    {"030411001001", "配管", "m", "1.名称：刚性阻燃管\n2.材质：PVC\n3.规格：PC20\n4.配置形式：暗配",
     "1.电线管路敷设\n2.钢索架设(拉紧装置安装)\n3.预留沟槽\n4.接地", "4-1126", "砖、混凝土结构暗配 刚性阻燃管 公称直径20mm以内", "配管配线"},
    {"030411004001", "配线", "m", "1.名称：管内穿线\n2.配线形式：照明线路\n3.型号：BV\n4.规格：2.5mm2\n5.材质：铜芯",
     "1.配线\n2.钢索架设(拉紧装置安装)\n3.支持体(夹板、绝缘子、槽板等)安装", "4-1359", "管内穿线 照明线路 铜芯 导线截面2.5mm2以内", "配管配线"},
    {"031001006001", "塑料管", "m", "1.安装部位：室内\n2.介质：给水\n3.材质、规格：PPR De25\n4.连接形式：热熔连接",
     "1.管道安装\n2.管件安装\n3.塑料卡固定\n4.压力试验\n5.吹扫、冲洗", "10-222", "室内塑料给水管 热熔连接 De25", "给排水管道"},
};

QStringList splitBars(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char('|'), Qt::SkipEmptyParts);
}

BillStore::Bill sampleBill(const SampleBill &s, int tier, int owner, double factor)
{
    const CompositionBuilder::Result c =
        CompositionBuilder::build(splitBars(s.quotaIds), splitBars(s.quotaNames), QString::fromUtf8(s.jldw));
    BillStore::Bill b;
    b.tier = tier;
    b.owner = owner;
    b.qdbh = QString::fromUtf8(s.qdbh);
    b.xmmc = QString::fromUtf8(s.xmmc);
    b.jldw = QString::fromUtf8(s.jldw);
    b.xmtz = QString::fromUtf8(s.xmtz);
    b.gznr = QString::fromUtf8(s.gznr);
    b.zjnr = c.zjnr;
    b.zhdj = CompositionBuilder::round2(c.zhdj * factor);
    return b;
}

}

void ServiceSeed::seedLibraries()
{
    ServiceDb &db = *m_context.db;
    BillStore store(db);
    db.write([&] {
        const int demo = userIdOf(db, "demo");
        const int zhangsan = userIdOf(db, "zhangsan");
        seedChapters(store, store.createLibrary(TierScope::Personal, demo, QStringLiteral("我的清单库")),
                     kBuildingChapters);
        seedChapters(store, store.createLibrary(TierScope::Personal, demo, QStringLiteral("我的安装清单库")),
                     kInstallChapters);
        seedChapters(store, store.createLibrary(TierScope::Personal, zhangsan, QStringLiteral("张三的清单库")),
                     kBuildingChapters);
        seedChapters(store,
                     store.createLibrary(TierScope::Enterprise, EastEnterprise, QStringLiteral("华东集团房建清单库")),
                     kBuildingChapters);
        seedChapters(store,
                     store.createLibrary(TierScope::Enterprise, EastEnterprise, QStringLiteral("华东集团安装清单库")),
                     kInstallChapters);
        seedChapters(store,
                     store.createLibrary(TierScope::Enterprise, WestEnterprise, QStringLiteral("蜀川咨询清单库")),
                     kBuildingChapters);
        seedChapters(store, store.createLibrary(TierScope::Korvane, 0, QStringLiteral("Korvane案例清单库")),
                     kInstallChapters);
    });
}

void ServiceSeed::seedSampleBills()
{
    ServiceDb &db = *m_context.db;
    BillStore store(db);
    db.write([&] {
        struct Target {
            int tier;
            int owner;
            double factor;
            const char *project;
            const char *place;
        };
        const int demo = userIdOf(db, "demo");
        const Target targets[] = {
            {TierScope::Personal, demo, 1.00, "成都市高新区某住宅项目", "成都市"},
            {TierScope::Personal, userIdOf(db, "zhangsan"), 1.08, "张三的积累工程", "重庆市"},
            {TierScope::Enterprise, EastEnterprise, 0.97, "南京市江北新区人才公寓", "南京市"},
            {TierScope::Enterprise, WestEnterprise, 1.04, "成都市天府新区学校", "成都市"},
            {TierScope::Korvane, 0, 1.02, "成都市某住宅小区（案例）", "成都市"},
        };
        for (const Target &t : targets) {
            // Library bills: into the first library of the owner, at the named leaf chapter.
            const QList<BillStore::Library> libs = store.libraries(t.tier, t.owner);
            for (const BillStore::Library &lib : libs) {
                for (const SampleBill &s : kSampleBills) {
                    const QString chapterId = db.scalar(QStringLiteral("SELECT id FROM chapters WHERE library_id = ?"
                                                                       " AND name = ?"),
                                                        {lib.id, QString::fromUtf8(s.chapter)})
                                                  .toString();
                    if (chapterId.isEmpty())
                        continue;
                    BillStore::Bill b = sampleBill(s, t.tier, t.owner, t.factor);
                    b.source = BillStore::StandardSource;
                    b.libraryId = lib.id;
                    b.chapterId = chapterId;
                    store.insertBill(b);
                }
            }
            BillStore::Project p;
            p.tier = t.tier;
            p.owner = t.owner;
            p.xmmc = QString::fromUtf8(t.project);
            p.dxmc = QStringLiteral("1#楼");
            p.dwmc = QStringLiteral("建筑与装饰工程");
            p.qdgf = QStringLiteral("GB50500-2013");
            p.jjde = QStringLiteral("四川省2020清单计价定额");
            p.jsfs = QStringLiteral("一般计税");
            p.zhdjfs = QStringLiteral("全费用综合单价");
            p.hbgd = QStringLiteral("500");
            p.dd = QString::fromUtf8(t.place);
            p.jgjzsj = QStringLiteral("2024年03月");
            p.jsxs = QStringLiteral("新建");
            p.zjsjlx = QStringLiteral("招标控制价");
            p.uploaderId = t.tier == TierScope::Personal ? t.owner : demo;
            p.gcType = 1;
            const int projectId = store.createProject(p);
            for (const SampleBill &s : kSampleBills) {
                BillStore::Bill b = sampleBill(s, t.tier, t.owner, t.factor * 1.03);
                b.source = BillStore::AccumulatedSource;
                b.projectId = projectId;
                b.dxmc = p.dxmc;
                store.insertBill(b);
            }
        }
    });
}

void ServiceSeed::seedPriceLibraries()
{
    ServiceDb &db = *m_context.db;
    db.write([&] {
        const PriceLibrarySeed libs[] = {
            {TierScope::Personal, userIdOf(db, "demo"), "cj-demo-1", "我的材价库", 1.00, "成都市", "2024年05月", ""},
            {TierScope::Personal, userIdOf(db, "zhangsan"), "cj-zhangsan-1", "张三的材价库", 1.06, "重庆市",
             "2024年04月", ""},
            {TierScope::Enterprise, EastEnterprise, "cj-east-2024", "华东集团2024年材价库", 0.97, "南京市", "2024年03月",
             ""},
            {TierScope::Enterprise, EastEnterprise, "cj-east-2023", "华东集团2023年材价库", 0.95, "南京市", "2023年09月",
             ""},
            {TierScope::Enterprise, WestEnterprise, "cj-west-2024", "蜀川咨询材价库", 1.04, "成都市", "2024年02月", ""},
            {TierScope::Korvane, 0, "case-chengdu", "成都市某住宅小区（案例）", 1.02, "成都市", "2024年03月",
             "成都市某住宅小区（案例）"},
            {TierScope::Korvane, 0, "case-wuhan", "武汉市某医院（案例）", 0.99, "武汉市", "2024年01月",
             "武汉市某医院（案例）"},
            {TierScope::Korvane, 0, "case-guangzhou", "广州市某办公楼（案例）", 1.05, "广州市", "2023年10月",
             "广州市某办公楼（案例）"},
        };
        int n = 0;
        for (const PriceLibrarySeed &lib : libs) {
            db.exec(QStringLiteral("INSERT INTO price_libraries(id, tier, owner, name, created) VALUES(?, ?, ?, ?, ?)"),
                    {QString::fromUtf8(lib.id), lib.tier, lib.ownerIndex, QString::fromUtf8(lib.name), kSeedTime});
            for (const MaterialSeed &m : kMaterials) {
                // A small spread per material keeps libraries from being exact multiples.
                const double spread = 1.0 + double(CompositionBuilder::stableHash(QString::fromUtf8(m.clbm)) % 7 + n % 3) / 200.0;
                const double djhs = CompositionBuilder::round2(m.djhs * lib.factor * spread);
                const double djbhs = CompositionBuilder::round2(djhs / (1.0 + m.taxRate));
                db.exec(QStringLiteral("INSERT INTO material_prices(library_id, clbm, clmc, ggxh, dw, cd, cj, djhs, djbhs,"
                                       " jgjzsj, gcdd, xmmc) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                        {QString::fromUtf8(lib.id), QString::fromUtf8(m.clbm), QString::fromUtf8(m.clmc),
                         QString::fromUtf8(m.ggxh), QString::fromUtf8(m.dw), QString::fromUtf8(m.cd),
                         QString::fromUtf8(m.cj), djhs, djbhs, QString::fromUtf8(lib.time), QString::fromUtf8(lib.place),
                         QString::fromUtf8(lib.project)});
            }
            ++n;
        }
    });
}

namespace {

QJsonArray readItems(const QString &path, QString *title)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("velora seed: cannot read %s", qUtf8Printable(path));
        return QJsonArray();
    }
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    if (title)
        *title = root.value(QStringLiteral("province")).toString();
    return root.value(QStringLiteral("items")).toArray();
}

QString numbered(const QJsonArray &parts)
{
    QStringList lines;
    for (int i = 0; i < parts.size(); ++i)
        lines.append(QStringLiteral("%1.%2").arg(i + 1).arg(parts.at(i).toString()));
    return lines.join(QLatin1Char('\n'));
}

QString featureLines(const QJsonArray &names)
{
    QStringList lines;
    for (int i = 0; i < names.size(); ++i)
        lines.append(QStringLiteral("%1.%2：").arg(i + 1).arg(names.at(i).toString()));
    return lines.join(QLatin1Char('\n'));
}

QString unitByName(const QString &name)
{
    struct Rule {
        const char *word;
        const char *unit;
    };
    static const Rule rules[] = {{"管", "m"},     {"线", "m"},       {"电缆", "m"},   {"桥架", "m"},   {"风管", "m2"},
                                 {"墙", "m2"},    {"天棚", "m2"},    {"地面", "m2"},  {"楼面", "m2"},  {"抹灰", "m2"},
                                 {"涂料", "m2"},  {"防水", "m2"},    {"门", "樘"},    {"窗", "m2"},    {"土方", "m3"},
                                 {"混凝土", "m3"}, {"钢筋", "t"},     {"灯", "套"},    {"开关", "个"},  {"插座", "个"},
                                 {"阀", "个"},    {"箱", "台"},      {"柜", "台"},    {"泵", "台"},    {"调试", "系统"}};
    for (const Rule &r : rules)
        if (name.contains(QString::fromUtf8(r.word)))
            return QString::fromUtf8(r.unit);
    return QStringLiteral("项");
}

struct BookSeed {
    const char *file;
    int tier;
    int owner; // 0: demo user for personal
    const char *project;
    const char *place;
    const char *time;
    int gcType;
};

}

void ServiceSeed::seedStandardBills()
{
    ServiceDb &db = *m_context.db;
    BillStore store(db);
    const QJsonArray items = readItems(
        QDir(sharedDataDir()).filePath(QStringLiteral("standard-bills/gb50856-2024-installation.json")), nullptr);
    if (items.isEmpty())
        return;
    db.write([&] {
        const int libraryId =
            store.createLibrary(TierScope::Korvane, 0, QStringLiteral("GB/T 50856-2024 通用安装工程标准清单"));
        for (const QJsonValue &v : items) {
            const QJsonObject o = v.toObject();
            const QString chapter = store.ensureChapterPath(
                libraryId, QString(),
                {o.value(QStringLiteral("appendix_name")).toString(), o.value(QStringLiteral("section_name")).toString()});
            BillStore::Bill b;
            b.tier = TierScope::Korvane;
            b.owner = 0;
            b.source = BillStore::StandardSource;
            b.libraryId = libraryId;
            b.chapterId = chapter;
            b.qdbh = o.value(QStringLiteral("code")).toString();
            b.xmmc = o.value(QStringLiteral("name")).toString();
            b.jldw = o.value(QStringLiteral("unit")).toString();
            b.xmtz = featureLines(o.value(QStringLiteral("features")).toArray());
            b.gznr = numbered(o.value(QStringLiteral("work_content")).toArray());
            store.insertBill(b);
        }
    });
}

void ServiceSeed::seedProjectBills()
{
    ServiceDb &db = *m_context.db;
    BillStore store(db);
    // Codes and units of the standard installation bills, by name, for the
    // installation books.
    QHash<QString, QPair<QString, QString>> standard;
    {
        QSqlQuery q = db.exec(QStringLiteral("SELECT xmmc, qdbh, jldw FROM bills WHERE source = 1 AND tier = 3"
                                             " AND length(qdbh) = 9 ORDER BY id"));
        while (q.next())
            if (!standard.contains(q.value(0).toString()))
                standard.insert(q.value(0).toString(), qMakePair(q.value(1).toString(), q.value(2).toString()));
    }
    const int demo = userIdOf(db, "demo");
    const BookSeed books[] = {
        {"jiangsu-building-2014.json", TierScope::Enterprise, EastEnterprise, "南京市江北新区人才公寓二期", "南京市",
         "2023年06月", 1},
        {"jiangsu-installation-2014.json", TierScope::Enterprise, EastEnterprise, "苏州工业园区厂房机电安装工程",
         "苏州市", "2023年11月", 1},
        {"guangdong-building-2018.json", TierScope::Korvane, 0, "广州市天河区某办公楼工程（案例）", "广州市",
         "2023年10月", 1},
        {"ningxia-building-2019.json", TierScope::Personal, demo, "银川市兴庆区住宅楼", "银川市", "2024年02月", 1},
        {"ningxia-installation-2019.json", TierScope::Enterprise, WestEnterprise, "银川市某学校教学楼安装工程",
         "银川市", "2024年01月", 1},
        {"hubei-installation-2024.json", TierScope::Korvane, 0, "武汉市某医院机电安装工程（案例）", "武汉市",
         "2024年01月", 1},
    };
    for (const BookSeed &book : books) {
        QString title;
        const QJsonArray items =
            readItems(QDir(sharedDataDir()).filePath(QStringLiteral("project-bills/") + QString::fromUtf8(book.file)),
                      &title);
        if (items.isEmpty())
            continue;
        db.write([&] {
            BillStore::Project p;
            p.tier = book.tier;
            p.owner = book.owner;
            p.xmmc = QString::fromUtf8(book.project);
            p.dxmc = QStringLiteral("主体工程");
            p.dwmc = QString::fromUtf8(book.file).contains(QStringLiteral("installation")) ? QStringLiteral("安装工程")
                                                                                            : QStringLiteral("建筑与装饰工程");
            p.qdgf = QStringLiteral("GB50500-2013");
            p.jjde = title;
            p.jsfs = QStringLiteral("一般计税");
            p.zhdjfs = QStringLiteral("综合单价");
            p.hbgd = QStringLiteral("0");
            p.dd = QString::fromUtf8(book.place);
            p.jgjzsj = QString::fromUtf8(book.time);
            p.jsxs = QStringLiteral("新建");
            p.zjsjlx = QStringLiteral("结算价");
            p.uploaderId = book.tier == TierScope::Personal ? book.owner : demo;
            p.gcType = book.gcType;
            const int projectId = store.createProject(p);
            int sequence = 0;
            for (const QJsonValue &v : items) {
                const QJsonObject o = v.toObject();
                const QString name = o.value(QStringLiteral("bill_name")).toString();
                QString text = o.value(QStringLiteral("bill_text")).toString();
                QString features = text.startsWith(name) ? text.mid(name.size()).trimmed() : text;
                features.replace(QStringLiteral("；"), QStringLiteral("\n"));
                QStringList quotaIds, quotaNames;
                for (const QJsonValue &q : o.value(QStringLiteral("quota_ids")).toArray())
                    quotaIds.append(q.toString());
                for (const QJsonValue &q : o.value(QStringLiteral("quota_names")).toArray())
                    quotaNames.append(q.toString());
                const auto known = standard.value(name);
                BillStore::Bill b;
                b.tier = book.tier;
                b.owner = book.owner;
                b.source = BillStore::AccumulatedSource;
                b.projectId = projectId;
                b.dxmc = p.dxmc;
                b.qdbh = known.first.isEmpty() ? QString() : known.first + QStringLiteral("%1").arg(++sequence, 3, 10, QLatin1Char('0'));
                b.xmmc = name;
                b.jldw = known.second.isEmpty() ? unitByName(name) : known.second;
                b.xmtz = features;
                const CompositionBuilder::Result c = CompositionBuilder::build(quotaIds, quotaNames, b.jldw);
                b.zjnr = c.zjnr;
                b.zhdj = c.zhdj;
                store.insertBill(b);
            }
        });
    }
}
