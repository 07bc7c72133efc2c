#pragma once
#include <QJsonObject>
#include <QString>

#include <functional>

class AccountStore;
class BillCatalog;
class LoginThrottle;
class RequestContext;
class ServiceDb;

// What every group of method handlers works with.
struct ServiceContext {
    ServiceDb *db = nullptr;
    AccountStore *accounts = nullptr;
    BillCatalog *catalog = nullptr;
    LoginThrottle *throttle = nullptr;
    QString dataDir;
};

// A handler returns the success reply's fields beside "code" and "msg":
// usually {"data": ...}, sometimes more ("allCount", "pageRowCount").
// Refusals are thrown as ServiceError.
using MethodHandler = std::function<QJsonObject(const RequestContext &)>;
