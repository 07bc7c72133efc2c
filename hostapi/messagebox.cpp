#include "messagebox.h"

#include <QMessageBox>
#include <QPushButton>

#include <mutex>

namespace {
std::mutex s_mutex;
MessageBoxes::Handler s_handler;
}

void MessageBoxes::setHandler(Handler handler)
{
    std::lock_guard<std::mutex> lock(s_mutex);
    s_handler = std::move(handler);
}

bool MessageBoxes::hasHandler()
{
    std::lock_guard<std::mutex> lock(s_mutex);
    return bool(s_handler);
}

int MessageBoxes::show(const MessageBoxRequest &request)
{
    Handler handler;
    {
        std::lock_guard<std::mutex> lock(s_mutex);
        handler = s_handler;
    }
    if (handler)
        return handler(request);

    QMessageBox box(request.parent);
    box.setWindowTitle(request.title.isEmpty() ? QStringLiteral("提示") : request.title);
    box.setText(request.text);
    box.setIcon(request.kind == 3 ? QMessageBox::Warning : QMessageBox::Information);
    QList<QAbstractButton *> buttons;
    if (request.buttons.isEmpty())
        buttons << box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
    for (const QString &caption : request.buttons)
        buttons << box.addButton(caption, QMessageBox::ActionRole);
    box.exec();
    return buttons.indexOf(box.clickedButton());
}

int showInformation(const QString &text, QWidget *parent, QString s1, QString, QString, QString,
                    int kind, int, int)
{
    return MessageBoxes::show({text, parent, s1, QStringList(), kind});
}

int showMessageBox(const QString &text, QWidget *parent, int kind)
{
    return showInformation(text, parent, QString(), QString(), QString(), QString(), kind, 0, 0);
}

int showMessage(const QString &title, const QString &text, const QStringList &buttons, QWidget *parent)
{
    return MessageBoxes::show({text, parent, title, buttons, 0});
}
