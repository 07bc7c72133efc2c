#pragma once
#include <QString>

#include <functional>

class QWidget;

// The host's file choosers. A handler, when installed, answers instead of
// the system dialog (tests); an empty answer is a cancel.
class HostFileDialogs
{
public:
    enum Mode { Open, Save };
    struct Request
    {
        Mode mode;
        QString caption;
        QString filter;
        QString suggested;
    };
    using Handler = std::function<QString(const Request &)>;

    static void setHandler(Handler handler);
    static QString openFileName(QWidget *parent, const QString &caption, const QString &filter,
                                const QString &dir = QString());
    static QString saveFileName(QWidget *parent, const QString &caption, const QString &filter,
                                const QString &suggested = QString());

private:
    static QString ask(QWidget *parent, const Request &request);
};
