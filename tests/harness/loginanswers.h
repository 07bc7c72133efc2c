#pragma once
// Scripted answers for the host's login form and the cloud's server list,
// shared by the login and server-choice tests.
#include <QDialog>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>

#include <functional>
#include <memory>

namespace loginanswers {

inline QJsonObject entry(const QString &name, const QString &token, int type, int qyid, const QString &kind,
                         bool login = false)
{
    return QJsonObject{{"name", name}, {"token", token}, {"type", type}, {"qyid", qyid}, {"kind", kind},
                       {"login", login}};
}

// The cloud's full list: personal, Korvane, big data, two enterprises, then
// one material price server (open to the Korvane login). The Korvane entries
// say whether the server knows the caller's session; a host that believes
// itself logged in takes "false" as a lost session.
inline QJsonArray serverList(bool knownSession = true)
{
    return QJsonArray{entry("个人云", "kv_token_user", 0, 0, "kv", knownSession),
                      entry("Korvane云", "kv_token", 0, 0, "kv", knownSession),
                      entry("Korvane大数据", "kv_token_bigdata", 0, 0, "kv", knownSession),
                      entry("华东企业", "ent_11", 1, 11, "pri"),
                      entry("华南企业", "ent_12", 2, 12, "pri"),
                      entry("华东企业材价库", "cj_11", 2, 11, "cj", true)};
}

inline QJsonObject loginReply()
{
    return QJsonObject{{"code", 0}, {"msg", ""},
                       {"data", QJsonObject{{"userid", "u1"}, {"username", "张三"}, {"session", "sess-1"}}}};
}

inline QJsonObject enterpriseLoginReply(const QString &token)
{
    return QJsonObject{{"code", 0}, {"msg", ""}, {"data", QJsonObject{{"token", token}}}};
}

// What an answered login form saw.
struct FormSeen
{
    QString title;
    QString server;
    QString error;
};

// Fills the form, clicks "登录", and returns the form's own result (1 only
// when the login succeeded).
inline std::function<int(QDialog *)> fillLogin(const QString &user, const QString &password,
                                               std::shared_ptr<FormSeen> seen = nullptr)
{
    return [user, password, seen](QDialog *dialog) {
        dialog->findChild<QLineEdit *>("editUser")->setText(user);
        dialog->findChild<QLineEdit *>("editPassword")->setText(password);
        dialog->findChild<QPushButton *>("btnLogin")->click();
        if (seen) {
            seen->title = dialog->windowTitle();
            seen->server = dialog->findChild<QLabel *>("lblServer")->text();
            seen->error = dialog->findChild<QLabel *>("lblError")->text();
        }
        return dialog->result();
    };
}

// The user closes the form without logging in.
inline std::function<int(QDialog *)> cancelLogin()
{
    return [](QDialog *dialog) {
        dialog->findChild<QPushButton *>("btnCancel")->click();
        return dialog->result();
    };
}

} // namespace loginanswers
