#include "hostfiledialogs.h"

#include <QFileDialog>

namespace {
HostFileDialogs::Handler &handler()
{
    static HostFileDialogs::Handler h;
    return h;
}
}

void HostFileDialogs::setHandler(Handler h)
{
    handler() = std::move(h);
}

QString HostFileDialogs::openFileName(QWidget *parent, const QString &caption, const QString &filter,
                                      const QString &dir)
{
    return ask(parent, {Open, caption, filter, dir});
}

QString HostFileDialogs::saveFileName(QWidget *parent, const QString &caption, const QString &filter,
                                      const QString &suggested)
{
    return ask(parent, {Save, caption, filter, suggested});
}

QString HostFileDialogs::ask(QWidget *parent, const Request &request)
{
    if (handler())
        return handler()(request);
    if (request.mode == Open)
        return QFileDialog::getOpenFileName(parent, request.caption, request.suggested, request.filter);
    return QFileDialog::getSaveFileName(parent, request.caption, request.suggested, request.filter);
}
