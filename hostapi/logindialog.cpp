#include "logindialog.h"
#include "users.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

LoginDialog::LoginDialog(const QString &title, const QString &serverName, Attempt attempt, QWidget *parent)
    : zTitleModal(parent), m_attempt(std::move(attempt))
{
    setWindowTitle(title);
    SetCaption(title);
    OnlyClose();
    setObjectName(QStringLiteral("dlgLogin"));
    buildUi(serverName);
}

void LoginDialog::buildUi(const QString &serverName)
{
    auto *layout = new QVBoxLayout;
    clientLayout()->addLayout(layout);
    layout->setContentsMargins(24, 20, 24, 16);
    layout->setSpacing(10);

    QWidget *client = clientWidget();
    auto *server = new QLabel(serverName, client);
    server->setObjectName(QStringLiteral("lblServer"));
    server->setStyleSheet(QStringLiteral("font-size: 15px; font-weight: bold; color: #1F2D3D;"));
    layout->addWidget(server);

    auto *form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_user = new QLineEdit(client);
    m_user->setObjectName(QStringLiteral("editUser"));
    m_user->setPlaceholderText(QStringLiteral("请输入用户名"));
    m_user->setText(Users::Instance()->Kvy()->userName());
    m_password = new QLineEdit(client);
    m_password->setObjectName(QStringLiteral("editPassword"));
    m_password->setPlaceholderText(QStringLiteral("请输入密码"));
    m_password->setEchoMode(QLineEdit::Password);
    form->addRow(QStringLiteral("用户名："), m_user);
    form->addRow(QStringLiteral("密码："), m_password);
    layout->addLayout(form);

    m_error = new QLabel(client);
    m_error->setObjectName(QStringLiteral("lblError"));
    m_error->setStyleSheet(QStringLiteral("color: #E64340;"));
    m_error->setWordWrap(true);
    layout->addWidget(m_error);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    m_login = new QPushButton(QStringLiteral("登录"), client);
    m_login->setObjectName(QStringLiteral("btnLogin"));
    m_login->setDefault(true);
    auto *cancel = new QPushButton(QStringLiteral("取消"), client);
    cancel->setObjectName(QStringLiteral("btnCancel"));
    buttons->addWidget(m_login);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);

    connect(m_login, &QPushButton::clicked, this, &LoginDialog::slotLogin);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    setMinimumWidth(360);
}

QString LoginDialog::errorText() const
{
    return m_error->text();
}

void LoginDialog::showError(const QString &text)
{
    m_error->setText(text);
}

void LoginDialog::slotLogin()
{
    const QString user = m_user->text().trimmed();
    if (user.isEmpty()) {
        showError(QStringLiteral("请输入用户名"));
        return;
    }
    if (m_password->text().isEmpty()) {
        showError(QStringLiteral("请输入密码"));
        return;
    }
    showError(QString());
    m_login->setEnabled(false);
    const QString failure = m_attempt ? m_attempt(user, m_password->text()) : QStringLiteral("登录失败");
    m_login->setEnabled(true);
    if (!failure.isEmpty()) {
        showError(failure);
        return;
    }
    accept();
}
