#include "cloudasyncrequest.h"

#include <QCoreApplication>
#include <QVariant>

ServicesUtil *CloudAsyncRequest::service()
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app)
        return nullptr;
    const QVariant address = app->property("ServicesUtil");
    if (!address.isValid() || address.toLongLong() == 0)
        return nullptr;
    return qobject_cast<ServicesUtil *>(reinterpret_cast<QObject *>(quintptr(address.toLongLong())));
}

bool CloudAsyncRequest::send(const CloudRequest &request)
{
    ServicesUtil *s = service();
    if (!s)
        return false;
    return QMetaObject::invokeMethod(s, "metaMsgSync", Q_ARG(QJsonObject, request.toJson()));
}
