#include "materialhandlers.h"
#include "compositionbuilder.h"
#include "passwordhash.h"
#include "requestcontext.h"
#include "servicedb.h"
#include "serviceerror.h"

#include <QDate>
#include <QDateTime>
#include <QJsonArray>
#include <QSqlQuery>

namespace {

constexpr int kMaxRecordsPerMaterial = 20;
constexpr double kTaxFactor = 1.13;

}

void MaterialHandlers::registerOn(QHash<QString, MethodHandler> &table)
{
    add(table, "materiallist", &MaterialHandlers::personalList);
    add(table, "getenterprisepricelist", &MaterialHandlers::enterpriseList);
    add(table, "personmaterialedit", &MaterialHandlers::editLibrary, TierScope::PersonalOnly, QStringLiteral("kmc"));
    add(table, "enterprisematrialedit", &MaterialHandlers::editLibrary, TierScope::EnterpriseOrKorvane,
        QStringLiteral("kuName"));
    add(table, "isauthorityforenterprise", &MaterialHandlers::authority);
    add(table, "getmaterialcheckrecords", &MaterialHandlers::checkRecords);
    add(table, "savematerialprices", &MaterialHandlers::savePrices);
}

QJsonArray MaterialHandlers::libraries(const TierScope &scope)
{
    return m_lists.fetch(scope.scopeKey(), *m_context.db, [&](qint64 *) {
        QJsonArray list;
        m_context.db->eachRow(
            QStringLiteral("SELECT id, name FROM price_libraries WHERE tier = ? AND owner = ? ORDER BY created, rowid"),
            {int(scope.tier()), scope.owner()}, [&](const QSqlQuery &q) {
                list.append(QJsonObject{{QStringLiteral("kmms"), q.value(1).toString()},
                                        {QStringLiteral("_id"), q.value(0).toString()}});
            });
        return list;
    }).toArray();
}

void MaterialHandlers::requireOwnLibrary(const TierScope &scope, const QString &id)
{
    if (id.isEmpty()
        || m_context.db
                   ->scalar(QStringLiteral("SELECT COUNT(*) FROM price_libraries WHERE id = ? AND tier = ? AND owner = ?"),
                            {id, int(scope.tier()), scope.owner()})
                   .toInt()
            == 0)
        throw ServiceError(ServiceError::NotFound, QStringLiteral("价表不存在"));
}

QJsonObject MaterialHandlers::personalList(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts, TierScope::PersonalOnly);
    return ok(QJsonObject{{QStringLiteral("sjksys"), libraries(scope)}});
}

QJsonObject MaterialHandlers::enterpriseList(const RequestContext &request)
{
    const QString klb = request.text(QStringLiteral("klb"), false, 10);
    if (!klb.isEmpty() && klb != QLatin1String("cj"))
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("参数klb格式错误"));
    const TierScope scope = TierScope::resolve(request, *m_context.accounts, TierScope::EnterpriseOrKorvane);
    return ok(libraries(scope));
}

QJsonObject MaterialHandlers::editLibrary(const RequestContext &request, TierScope::Admits admits,
                                          const QString &nameKey)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts, admits);
    const int oper = request.integer(QStringLiteral("oper"), true);
    const QString id = request.text(QStringLiteral("sjksyid"), false, 64);
    ServiceDb &db = *m_context.db;
    auto nameTaken = [&](const QString &name, const QString &except) {
        return db.scalar(QStringLiteral("SELECT COUNT(*) FROM price_libraries WHERE tier = ? AND owner = ? AND name = ?"
                                        " AND id <> ?"),
                         {int(scope.tier()), scope.owner(), name, except})
                   .toInt()
            > 0;
    };
    QString resultId = id;
    QString resultName;
    if (oper == 1) {
        scope.requireWrite();
        resultName = checkedName(request.text(nameKey, false, 200), QStringLiteral("价表"));
        resultId = QStringLiteral("cj-") + PasswordHash::randomToken(8);
        db.write([&] {
            if (nameTaken(resultName, QString()))
                throw ServiceError(ServiceError::Conflict, QStringLiteral("价表名称已存在"));
            db.exec(QStringLiteral("INSERT INTO price_libraries(id, tier, owner, name, created) VALUES(?, ?, ?, ?, ?)"),
                    {resultId, int(scope.tier()), scope.owner(), resultName,
                     QDateTime::currentDateTimeUtc().toString(Qt::ISODate)});
        });
    } else if (oper == 2) {
        scope.requireWrite();
        resultName = checkedName(request.text(nameKey, false, 200), QStringLiteral("价表"));
        requireOwnLibrary(scope, id);
        db.write([&] {
            if (nameTaken(resultName, id))
                throw ServiceError(ServiceError::Conflict, QStringLiteral("价表名称已存在"));
            db.exec(QStringLiteral("UPDATE price_libraries SET name = ? WHERE id = ?"), {resultName, id});
        });
    } else if (oper == 3) {
        scope.requireAdmin();
        requireOwnLibrary(scope, id);
        resultName = db.scalar(QStringLiteral("SELECT name FROM price_libraries WHERE id = ?"), {id}).toString();
        db.write([&] {
            db.exec(QStringLiteral("DELETE FROM material_prices WHERE library_id = ?"), {id});
            db.exec(QStringLiteral("DELETE FROM price_libraries WHERE id = ?"), {id});
        });
    } else {
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("参数oper格式错误"));
    }
    return ok(QJsonObject{{QStringLiteral("_id"), resultId}, {QStringLiteral("kmms"), resultName}});
}

QJsonObject MaterialHandlers::authority(const RequestContext &request)
{
    TierScope::resolve(request, *m_context.accounts, TierScope::EnterpriseOrKorvane).requireWrite();
    return ok();
}

QJsonObject MaterialHandlers::checkRecords(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    const QJsonObject params = request.object(QStringLiteral("params"));
    const bool caseProjects = params.value(QStringLiteral("isAlgc")).toBool();
    const bool taxIncluded = RequestContext::integerIn(params, QStringLiteral("hsbz"), false, 1) != 0;
    const QString place = RequestContext::textIn(params, QStringLiteral("dd"), false, 100).trimmed();
    const QJsonArray materials = request.array(QStringLiteral("materials"), true);
    QString library;
    if (!caseProjects) {
        library = request.text(QStringLiteral("sjksyid"), true, 64);
        requireOwnLibrary(scope, library);
    }
    QJsonArray records;
    for (const QJsonValue &v : materials) {
        const QJsonObject m = v.toObject();
        const QString name = RequestContext::textIn(m, QStringLiteral("clmc"), false, 200).trimmed();
        if (name.isEmpty())
            continue;
        const QString model = RequestContext::textIn(m, QStringLiteral("ggxh"), false, 200).trimmed();
        const QString unit = RequestContext::textIn(m, QStringLiteral("dw"), false, 20).trimmed();
        const QJsonValue guid = m.value(QStringLiteral("guid"));
        // Same model (规格型号) first, then the requested place, then the newest price.
        QSqlQuery q = m_context.db->exec(
            QStringLiteral("SELECT p.clmc, p.ggxh, p.dw, p.cd, p.cj, p.djhs, p.djbhs, p.jgjzsj, p.gcdd,"
                           " CASE WHEN p.xmmc <> '' THEN p.xmmc ELSE l.name END"
                           " FROM material_prices p JOIN price_libraries l ON l.id = p.library_id"
                           " WHERE p.clmc = ? AND (? = '' OR p.dw = ?)"
                           " AND ((? = 1 AND l.tier = 3) OR (? = 0 AND l.id = ?))"
                           " ORDER BY (p.ggxh = ?) DESC, (? <> '' AND (instr(?, p.gcdd) > 0 OR instr(p.gcdd, ?) > 0)) DESC,"
                           " p.jgjzsj DESC, p.id LIMIT ?"),
            {name, unit, unit, caseProjects ? 1 : 0, caseProjects ? 1 : 0, library, model, place, place, place,
             kMaxRecordsPerMaterial});
        while (q.next()) {
            const double withTax = q.value(5).toDouble();
            const double withoutTax = q.value(6).toDouble();
            records.append(QJsonObject{{QStringLiteral("guid"), guid},
                                       {QStringLiteral("ydjhs"), withTax},
                                       {QStringLiteral("ydjbhs"), withoutTax},
                                       {QStringLiteral("dj"), taxIncluded ? withTax : withoutTax},
                                       {QStringLiteral("clmc"), q.value(0).toString()},
                                       {QStringLiteral("ggxh"), q.value(1).toString()},
                                       {QStringLiteral("dw"), q.value(2).toString()},
                                       {QStringLiteral("cd"), q.value(3).toString()},
                                       {QStringLiteral("cj"), q.value(4).toString()},
                                       {QStringLiteral("jgjzsj"), q.value(7).toString()},
                                       {QStringLiteral("gcdd"), q.value(8).toString()},
                                       {QStringLiteral("xmmc"), q.value(9).toString()}});
        }
    }
    return ok(records);
}

QJsonObject MaterialHandlers::savePrices(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    scope.requireWrite();
    const QString library = request.text(QStringLiteral("sjksyid"), true, 64);
    requireOwnLibrary(scope, library);
    const QJsonArray materials = request.array(QStringLiteral("materials"), true);
    const bool taxIncluded = request.integer(QStringLiteral("hsbz"), false, 1) != 0;
    QString time = request.text(QStringLiteral("sj"), false, 40);
    if (time.isEmpty())
        time = QDate::currentDate().toString(QStringLiteral("yyyy年MM月"));
    const QString place = request.text(QStringLiteral("dd"), false, 100);
    ServiceDb &db = *m_context.db;
    int saved = 0;
    QJsonArray failed;
    db.write([&] {
        for (const QJsonValue &v : materials) {
            const QJsonObject m = v.toObject();
            const QJsonValue guid = m.value(QStringLiteral("guid"));
            double price = 0.0;
            QString name, model, unit;
            try {
                name = RequestContext::textIn(m, QStringLiteral("clmc"), true, 200).trimmed();
                model = RequestContext::textIn(m, QStringLiteral("ggxh"), false, 200).trimmed();
                unit = RequestContext::textIn(m, QStringLiteral("dw"), false, 20).trimmed();
                price = RequestContext::numberIn(m, QStringLiteral("tj"), false);
                if (price <= 0.0)
                    price = RequestContext::numberIn(m, QStringLiteral("dj"), false);
            } catch (const ServiceError &) {
                price = 0.0;
            }
            if (price <= 0.0 || name.isEmpty()) {
                failed.append(guid);
                continue;
            }
            const double withTax = CompositionBuilder::round2(taxIncluded ? price : price * kTaxFactor);
            const double withoutTax = CompositionBuilder::round2(taxIncluded ? price / kTaxFactor : price);
            db.exec(QStringLiteral("DELETE FROM material_prices WHERE library_id = ? AND clmc = ? AND ggxh = ? AND dw = ?"),
                    {library, name, model, unit});
            db.exec(QStringLiteral("INSERT INTO material_prices(library_id, clbm, clmc, ggxh, dw, cd, cj, djhs, djbhs,"
                                   " jgjzsj, gcdd, xmmc) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, '')"),
                    {library, RequestContext::textIn(m, QStringLiteral("bh"), false, 40), name, model, unit,
                     RequestContext::textIn(m, QStringLiteral("cd"), false, 100),
                     RequestContext::textIn(m, QStringLiteral("cj"), false, 100), withTax, withoutTax, time, place});
            ++saved;
        }
    });
    return ok(QJsonObject{{QStringLiteral("saved"), saved}, {QStringLiteral("failed"), failed}});
}
