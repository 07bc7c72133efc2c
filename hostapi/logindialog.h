#pragma once
#include "ztitlemodal.h"

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

// The host's modal login form: user name, password, "登录" and an error line.
// The attempt function checks the credentials (with the cloud) and returns the
// message to show, empty on success; success accepts the dialog.
// Widgets: "editUser", "editPassword", "btnLogin", "btnCancel", "lblError".
class LoginDialog : public zTitleModal
{
    Q_OBJECT
public:
    using Attempt = std::function<QString(const QString &user, const QString &password)>;

    LoginDialog(const QString &title, const QString &serverName, Attempt attempt, QWidget *parent = nullptr);

    QString errorText() const;

private slots:
    void slotLogin();

private:
    void buildUi(const QString &serverName);
    void showError(const QString &text);

    Attempt m_attempt;
    QLineEdit *m_user = nullptr;
    QLineEdit *m_password = nullptr;
    QPushButton *m_login = nullptr;
    QLabel *m_error = nullptr;
};
