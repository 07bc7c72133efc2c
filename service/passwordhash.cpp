#include "passwordhash.h"

#include <QCryptographicHash>
#include <QPasswordDigestor>
#include <QRandomGenerator>

#include <sodium.h>

namespace {

bool sodiumReady()
{
    static const bool ready = sodium_init() >= 0;
    return ready;
}

}

PasswordHash::Cost PasswordHash::interactive()
{
    return Cost{crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE};
}

PasswordHash::Cost PasswordHash::minimum()
{
    return Cost{crypto_pwhash_OPSLIMIT_MIN, crypto_pwhash_MEMLIMIT_MIN};
}

PasswordHash::Cost PasswordHash::configured()
{
    static const bool cheap = qgetenv("VELORA_CLOUD_PASSWORD_COST") == "minimum";
    return cheap ? minimum() : interactive();
}

QByteArray PasswordHash::hash(const QString &password, const Cost &cost)
{
    if (!sodiumReady())
        return QByteArray();
    const QByteArray utf8 = password.toUtf8();
    char out[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str(out, utf8.constData(), size_t(utf8.size()), cost.opsLimit, cost.memLimit) != 0)
        return QByteArray();
    return QByteArray(out);
}

bool PasswordHash::verify(const QByteArray &stored, const QString &password)
{
    if (!sodiumReady() || size_t(stored.size()) >= crypto_pwhash_STRBYTES)
        return false;
    const QByteArray utf8 = password.toUtf8();
    return crypto_pwhash_str_verify(stored.constData(), utf8.constData(), size_t(utf8.size())) == 0;
}

bool PasswordHash::needsRehash(const QByteArray &stored, const Cost &cost)
{
    if (!sodiumReady() || size_t(stored.size()) >= crypto_pwhash_STRBYTES)
        return true;
    return crypto_pwhash_str_needs_rehash(stored.constData(), cost.opsLimit, cost.memLimit) != 0;
}

bool PasswordHash::verifyLegacy(const QString &password, const QByteArray &salt, int iterations,
                                const QByteArray &key)
{
    if (iterations <= 0 || key.size() != 32 || !sodiumReady())
        return false;
    const QByteArray derived = QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, password.toUtf8(),
                                                                  salt, iterations, 32);
    return derived.size() == 32 && sodium_memcmp(derived.constData(), key.constData(), 32) == 0;
}

QString PasswordHash::randomToken(int bytes)
{
    QByteArray random(bytes, Qt::Uninitialized);
    auto *rng = QRandomGenerator::system();
    for (char &c : random)
        c = char(rng->bounded(256));
    return QString::fromLatin1(random.toHex());
}

namespace {

// libsodium's SHA-256 takes a fifth of the time of Qt's, and every
// logged-in request hashes its session.
QString hex(const unsigned char *bytes, size_t size)
{
    char text[2 * crypto_hash_sha256_BYTES + 1];
    sodium_bin2hex(text, sizeof text, bytes, size);
    return QString::fromLatin1(text, int(2 * size));
}

const unsigned char *bytesOf(const QByteArray &data)
{
    return reinterpret_cast<const unsigned char *>(data.constData());
}

}

QString PasswordHash::tokenDigest(const QString &token)
{
    sodiumReady();
    const QByteArray text = token.toUtf8();
    unsigned char digest[crypto_hash_sha256_BYTES];
    crypto_hash_sha256(digest, bytesOf(text), size_t(text.size()));
    return hex(digest, sizeof digest);
}

QString PasswordHash::keyedDigest(const QByteArray &key, const QByteArray &message)
{
    sodiumReady();
    crypto_auth_hmacsha256_state state;
    unsigned char mac[crypto_auth_hmacsha256_BYTES];
    crypto_auth_hmacsha256_init(&state, bytesOf(key), size_t(key.size()));
    crypto_auth_hmacsha256_update(&state, bytesOf(message), size_t(message.size()));
    crypto_auth_hmacsha256_final(&state, mac);
    return hex(mac, sizeof mac);
}
