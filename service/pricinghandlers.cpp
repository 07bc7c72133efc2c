#include "pricinghandlers.h"
#include "requestcontext.h"
#include "servicedb.h"
#include "serviceerror.h"

#include <QJsonArray>
#include <QSqlQuery>

namespace {

constexpr int kMaxTagNum = 10;
constexpr int kMaxPageSize = 50;
constexpr int kSimilarPool = 50;

QStringList textList(const QJsonArray &array)
{
    QStringList list;
    for (const QJsonValue &v : array) {
        const QString text = v.isDouble() ? QString::number(v.toDouble(), 'g', 15) : v.toString();
        if (!text.trimmed().isEmpty())
            list.append(text.trimmed());
    }
    return list;
}

int checkedSourceMask(int mask)
{
    if (mask < 0 || mask > 3)
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("清单来源参数错误"));
    return mask;
}

}

void PricingHandlers::registerOn(QHash<QString, MethodHandler> &table)
{
    add(table, "getppqd", &PricingHandlers::matchedBills);
    add(table, "intelligencezjforpersonprojectinfo", &PricingHandlers::projectInfo, TierScope::PersonalOnly);
    add(table, "intelligencezjforkvprojectinfo", &PricingHandlers::projectInfo, TierScope::KorvaneOnly);
    add(table, "intelligencezjforenterpriseprojectinfo", &PricingHandlers::projectInfo, TierScope::EnterpriseOrKorvane);
    add(table, "personprojectinfoforsinglepricecheck", &PricingHandlers::projectInfo, TierScope::PersonalOnly);
    add(table, "kvprojectinfoforsinglepricecheck", &PricingHandlers::projectInfo, TierScope::KorvaneOnly);
    add(table, "enterpriseprojectinfoforsinglepricecheck", &PricingHandlers::projectInfo, TierScope::EnterpriseOrKorvane);
    add(table, "matchqdtz", &PricingHandlers::featureMatches);
    add(table, "getgcsldata", &PricingHandlers::sourceInfo);
    add(table, "getsimilarbillprices", &PricingHandlers::similarBills);
    add(table, "getaccumulatedprojects", &PricingHandlers::accumulatedProjects);
}

BillCatalog::Query PricingHandlers::billQuery(const QJsonObject &bill)
{
    BillCatalog::Query q;
    q.code = RequestContext::textIn(bill, QStringLiteral("qdbh"), false, 40).trimmed();
    q.name = RequestContext::textIn(bill, QStringLiteral("xmmc"), false, 500);
    q.unit = RequestContext::textIn(bill, bill.contains(QStringLiteral("jldw")) ? QStringLiteral("jldw") : QStringLiteral("dw"),
                                    false, 20)
                 .trimmed();
    q.features = RequestContext::textIn(bill, QStringLiteral("xmtz"), false);
    q.workContent = RequestContext::textIn(bill, QStringLiteral("gznr"), false);
    return q;
}

BillStore::Bill PricingHandlers::visibleBill(const TierScope &scope, qint64 id)
{
    BillStore store(*m_context.db);
    const BillStore::Bill bill = id > 0 ? store.bill(id) : BillStore::Bill();
    const QString owner = bill.id != 0 ? BillCatalog::scopeOf(bill) : QStringLiteral("-");
    if (bill.id == 0 || (!owner.isEmpty() && owner != scope.scopeKey()))
        throw ServiceError(ServiceError::NotFound, QStringLiteral("清单不存在或无权查看"));
    return bill;
}

QJsonObject PricingHandlers::pricedBill(const BillStore::Bill &bill, bool withComposition)
{
    BillStore store(*m_context.db);
    const BillStore::Project project = bill.projectId > 0 ? store.project(bill.projectId) : BillStore::Project();
    return QJsonObject{{QStringLiteral("id"), double(bill.id)},
                       {QStringLiteral("qdly"), QString::number(bill.source)},
                       {QStringLiteral("qdbh"), bill.qdbh},
                       {QStringLiteral("xmmc"), bill.xmmc},
                       {QStringLiteral("jldw"), bill.jldw},
                       {QStringLiteral("xmtz"), bill.xmtz},
                       {QStringLiteral("gznr"), bill.gznr},
                       {QStringLiteral("zhdj"), bill.zhdj},
                       {QStringLiteral("jzsj"), project.jgjzsj},
                       {QStringLiteral("dd"), project.dd},
                       {QStringLiteral("zjnr"), withComposition ? bill.zjnr : QString()}};
}

QJsonObject PricingHandlers::matchedBills(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    const QJsonObject cond = request.object(QStringLiteral("cond"));
    const QJsonArray bills = request.array(QStringLiteral("data"), true, 1);
    if (bills.isEmpty() || !bills.at(0).isObject())
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("缺少要匹配的清单"));
    const int tagNum = qBound(1, request.integer(QStringLiteral("tagNum"), false, kMaxTagNum), kMaxTagNum);
    const bool withComposition = request.text(QStringLiteral("getzj"), false, 4) != QLatin1String("0");

    BillCatalog::Query q = billQuery(bills.at(0).toObject());
    q.sourceMask = checkedSourceMask(RequestContext::integerIn(cond, QStringLiteral("qdly"), false, 3));
    q.projectIds = textList(RequestContext::arrayIn(cond, QStringLiteral("gcids"), false));
    q.keyword = RequestContext::textIn(cond, QStringLiteral("qdkey"), false, 200);
    q.limit = tagNum;
    QJsonArray list;
    BillStore store(*m_context.db);
    for (qint64 id : m_context.catalog->match(q, scope.scopeKey())) {
        const QString key = QString::number(id) + (withComposition ? QLatin1String("+") : QLatin1String("-"));
        list.append(m_pricedBills.fetch(key, *m_context.db, [&](qint64 *) {
            return pricedBill(store.bill(id), withComposition);
        }));
    }
    return ok(list);
}

QString PricingHandlers::uploaderName(const BillStore::Bill &bill, const BillStore::Project &project)
{
    int userId = project.uploaderId;
    if (userId == 0 && !bill.taskId.isEmpty())
        userId = m_context.db->scalar(QStringLiteral("SELECT user_id FROM saving_tasks WHERE id = ?"), {bill.taskId}).toInt();
    return m_context.db->scalar(QStringLiteral("SELECT display_name FROM users WHERE id = ?"), {userId}).toString();
}

QJsonObject PricingHandlers::projectInfo(const RequestContext &request, TierScope::Admits admits)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts, admits);
    const int id = request.integer(QStringLiteral("id"), true);
    request.integer(QStringLiteral("ly"));
    const BillStore::Bill bill = visibleBill(scope, id);
    BillStore store(*m_context.db);
    const BillStore::Project p = bill.projectId > 0 ? store.project(bill.projectId) : BillStore::Project();
    QJsonObject info{{QStringLiteral("xmmc"), p.id ? p.xmmc : store.library(bill.libraryId).name},
                     {QStringLiteral("dxmc"), p.dxmc},
                     {QStringLiteral("dwmc"), p.dwmc},
                     {QStringLiteral("qdgf"), p.qdgf},
                     {QStringLiteral("jjde"), p.jjde},
                     {QStringLiteral("jsfs"), p.jsfs},
                     {QStringLiteral("zhdjfs"), p.zhdjfs},
                     {QStringLiteral("hbgd"), p.hbgd},
                     {QStringLiteral("dd"), p.dd},
                     {QStringLiteral("jgjzsj"), p.jgjzsj},
                     {QStringLiteral("jsxs"), p.jsxs},
                     {QStringLiteral("zjsjlx"), p.zjsjlx},
                     {QStringLiteral("scrmc"), uploaderName(bill, p)},
                     // Case projects of the Korvane cloud do not name who uploaded them.
                     {QStringLiteral("oper"), scope.tier() == TierScope::Korvane ? 1 : 0}};
    return ok(info);
}

QJsonObject PricingHandlers::featureMatches(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    const QJsonObject params = request.object(QStringLiteral("params"));
    const int page = RequestContext::integerIn(params, QStringLiteral("page"), false, 1);
    const int pageSize = RequestContext::integerIn(params, QStringLiteral("pageSize"), false, 10);
    if (page < 1 || page > 100000 || pageSize < 1 || pageSize > kMaxPageSize)
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("分页参数错误"));
    BillCatalog::Query q = billQuery(request.data());
    q.keyword = RequestContext::textIn(params, QStringLiteral("keyword"), false, 200);
    q.sourceMask = checkedSourceMask(request.integer(QStringLiteral("sourceMask"), false, 3));
    q.projectIds = textList(request.array(QStringLiteral("gcids")));
    q.offset = (page - 1) * pageSize;
    q.limit = pageSize;
    int total = 0;
    const QVector<qint64> ids = m_context.catalog->match(q, scope.scopeKey(), &total);
    BillStore store(*m_context.db);
    QJsonArray standard, accumulated;
    for (qint64 id : ids) {
        const BillStore::Bill b = store.bill(id);
        QJsonObject e{{QStringLiteral("guida"), QString::number(b.id)},
                      {QStringLiteral("xmmc"), b.xmmc},
                      {QStringLiteral("xmtz"), b.xmtz},
                      {QStringLiteral("gznr"), b.gznr},
                      {QStringLiteral("qdbh"), b.qdbh},
                      {QStringLiteral("jldw"), b.jldw}};
        if (b.source == BillStore::StandardSource) {
            e.insert(QStringLiteral("bzqdkmc"), store.library(b.libraryId).name);
            standard.append(e);
        } else {
            e.insert(QStringLiteral("gcmc"), store.project(b.projectId).xmmc);
            accumulated.append(e);
        }
    }
    return QJsonObject{{QStringLiteral("allCount"), total},
                       {QStringLiteral("pageRowCount"), pageSize},
                       {QStringLiteral("data"),
                        QJsonObject{{QStringLiteral("bzqds"), standard}, {QStringLiteral("jlqds"), accumulated}}}};
}

QJsonObject PricingHandlers::sourceInfo(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    const QString id = request.text(QStringLiteral("id"), true, 20);
    const BillStore::Bill bill = visibleBill(scope, id.toLongLong());
    BillStore store(*m_context.db);
    const BillStore::Project p = bill.projectId > 0 ? store.project(bill.projectId) : BillStore::Project();
    return ok(QJsonObject{{QStringLiteral("xmmc"), p.id ? p.xmmc : store.library(bill.libraryId).name},
                          {QStringLiteral("qdbh"), bill.qdbh},
                          {QStringLiteral("dwmc"), p.dwmc},
                          {QStringLiteral("dxmc"), p.id ? p.dxmc : bill.dxmc},
                          {QStringLiteral("qdmc"), bill.xmmc}});
}

QJsonObject PricingHandlers::similarBills(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    const int matchNum = request.integer(QStringLiteral("matchNum"), true);
    if (matchNum != 1 && matchNum != 3 && matchNum != 5)
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("匹配个数只能是1、3或5"));
    BillCatalog::Query q = billQuery(request.data());
    if (q.name.trimmed().isEmpty() && q.code.isEmpty())
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("缺少参数xmmc"));
    q.limit = kSimilarPool;
    BillStore store(*m_context.db);
    QJsonArray list;
    for (qint64 id : m_context.catalog->match(q, scope.scopeKey())) {
        const BillStore::Bill b = store.bill(id);
        // Only bills that carry a price can be compared.
        if (b.zhdj <= 0.0)
            continue;
        list.append(pricedBill(b, true));
        if (list.size() == matchNum)
            break;
    }
    return ok(list);
}

QJsonObject PricingHandlers::accumulatedProjects(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    const int gcType = request.integer(QStringLiteral("gcType"), false, 0);
    const QString keyword = request.text(QStringLiteral("keyword"), false, 100).trimmed();
    BillStore store(*m_context.db);
    QJsonArray list;
    for (const BillStore::Project &p : store.projects(scope.tier(), scope.owner(), gcType, keyword))
        list.append(QJsonObject{{QStringLiteral("tid"), QString::number(p.id)},
                                {QStringLiteral("xmmc"), p.xmmc},
                                {QStringLiteral("dq"), p.dd},
                                {QStringLiteral("sj"), p.jgjzsj},
                                {QStringLiteral("gcType"), p.gcType}});
    return ok(list);
}
