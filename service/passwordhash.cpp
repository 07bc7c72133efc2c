#include "passwordhash.h"

#include <QMessageAuthenticationCode>
#include <QRandomGenerator>

namespace {

QByteArray randomBytes(int count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    auto *rng = QRandomGenerator::system();
    for (int i = 0; i < count; ++i)
        bytes[i] = char(rng->bounded(256));
    return bytes;
}

}

QByteArray PasswordHash::newSalt()
{
    return randomBytes(16);
}

QByteArray PasswordHash::derive(const QString &password, const QByteArray &salt, int iterations)
{
    // One 32-byte block is all a SHA-256 key needs.
    QMessageAuthenticationCode mac(QCryptographicHash::Sha256, password.toUtf8());
    mac.addData(salt);
    mac.addData(QByteArray::fromHex("00000001"));
    QByteArray u = mac.result();
    QByteArray key = u;
    for (int i = 1; i < iterations; ++i) {
        mac.reset();
        mac.addData(u);
        u = mac.result();
        for (int j = 0; j < key.size(); ++j)
            key[j] = char(key.at(j) ^ u.at(j));
    }
    return key;
}

bool PasswordHash::equal(const QByteArray &a, const QByteArray &b)
{
    if (a.size() != b.size())
        return false;
    unsigned char diff = 0;
    for (int i = 0; i < a.size(); ++i)
        diff |= static_cast<unsigned char>(a.at(i) ^ b.at(i));
    return diff == 0;
}

QString PasswordHash::randomToken(int bytes)
{
    return QString::fromLatin1(randomBytes(bytes).toHex());
}
