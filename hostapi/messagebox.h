#pragma once
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

// One request to show a host message box, as the caller made it.
struct MessageBoxRequest
{
    QString text;
    QPointer<QWidget> parent;
    QString title;
    QStringList buttons;
    int kind = 0;
};

// Facade over the host's message boxes. A handler, when installed, answers
// instead of a real box (tests, the --tour run).
class MessageBoxes
{
public:
    using Handler = std::function<int(const MessageBoxRequest &)>;
    static void setHandler(Handler handler);
    static bool hasHandler();
    static int show(const MessageBoxRequest &request);
};

// The host's information box. The module passes four empty strings and three
// zeros after the parent; the first int is the kind (3 = warning).
int showInformation(const QString &text, QWidget *parent, QString s1 = QString(), QString s2 = QString(),
                    QString s3 = QString(), QString s4 = QString(), int kind = 0, int i2 = 0, int i3 = 0);

// The short form of the module's showInformation(text, parent, "", "", "", "",
// kind, 0, 0): 0 information, 3 warning.
int showMessageBox(const QString &text, QWidget *parent, int kind = 0);

// A box with a title and captioned buttons; returns the index of the pressed
// button (-1 when closed).
int showMessage(const QString &title, const QString &text, const QStringList &buttons, QWidget *parent);
