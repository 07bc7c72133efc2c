#pragma once
#include <QByteArray>
#include <QString>

// Salted, slow password hashes: PBKDF2-HMAC-SHA256.
class PasswordHash
{
public:
    static constexpr int DefaultIterations = 20000;

    static QByteArray newSalt();
    static QByteArray derive(const QString &password, const QByteArray &salt, int iterations);
    // Constant-time comparison of two derived keys.
    static bool equal(const QByteArray &a, const QByteArray &b);
    // A random hex text of `bytes` random bytes (session tokens).
    static QString randomToken(int bytes = 24);
};
