#pragma once
#include <QByteArray>
#include <QString>

#include <exception>

namespace DBM {

// A failed database operation; what() carries SQLite's own error text.
class exDBM : public std::exception
{
public:
    explicit exDBM(const QString &message);
    const char *what() const noexcept override;
    QString message() const { return m_message; }

private:
    QString m_message;
    QByteArray m_utf8;
};

}
