#include "logindialog.h"
#include "buttonrow.h"
#include "users.h"
#include "widgetfactory.h"

#include <QFormLayout>
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
    layout->addWidget(WidgetFactory::label(serverName, QStringLiteral("lblServer"), client,
                                           QStringLiteral("font-size: 15px; font-weight: bold; color: #1F2D3D;")));

    auto *form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_user = new QLineEdit(client);
    m_user->setObjectName(QStringLiteral("editUser"));
    m_user->setPlaceholderText(QStringLiteral("请输入用户名"));
    m_user->setText(Users::Instance()->Kvy()->loginName());
    m_password = new QLineEdit(client);
    m_password->setObjectName(QStringLiteral("editPassword"));
    m_password->setPlaceholderText(QStringLiteral("请输入密码"));
    m_password->setEchoMode(QLineEdit::Password);
    form->addRow(QStringLiteral("用户名："), m_user);
    form->addRow(QStringLiteral("密码："), m_password);
    layout->addLayout(form);

    m_error = WidgetFactory::label(QString(), QStringLiteral("lblError"), client, QStringLiteral("color: #E64340;"));
    m_error->setWordWrap(true);
    layout->addWidget(m_error);

    auto *buttons = new ButtonRow(client);
    m_login = buttons->addButton(QStringLiteral("登录"), QStringLiteral("btnLogin"));
    m_login->setDefault(true);
    buttons->addCancel(this);
    layout->addLayout(buttons);
    connect(m_login, &QPushButton::clicked, this, &LoginDialog::slotLogin);
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
