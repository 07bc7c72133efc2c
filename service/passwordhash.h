#pragma once
#include <QByteArray>
#include <QString>

// Password hashes: libsodium's Argon2id in its self-describing text form
// ("$argon2id$v=19$m=...,t=...,p=1$salt$hash"). Rows written before it hold
// a PBKDF2-HMAC-SHA256 key with its salt and iteration count; those are still
// verified, and replaced at the next successful login.
class PasswordHash
{
public:
    struct Cost {
        unsigned long long opsLimit = 0;
        size_t memLimit = 0;
    };

    // libsodium's interactive strength.
    static Cost interactive();
    // The least libsodium allows; only for test runs.
    static Cost minimum();
    // interactive(), or minimum() when VELORA_CLOUD_PASSWORD_COST is
    // "minimum" (set by the test suite, never by a deployment).
    static Cost configured();

    // Empty when the hash could not be made (out of memory).
    static QByteArray hash(const QString &password, const Cost &cost);
    static bool verify(const QByteArray &stored, const QString &password);
    // True when `stored` is not an Argon2id hash of exactly this cost.
    static bool needsRehash(const QByteArray &stored, const Cost &cost);

    static bool verifyLegacy(const QString &password, const QByteArray &salt, int iterations,
                             const QByteArray &key);

    // A random hex text of `bytes` random bytes (session tokens).
    static QString randomToken(int bytes = 24);
    // What is stored for a token: its SHA-256, hex.
    static QString tokenDigest(const QString &token);
    // HMAC-SHA256 of `message` under `key`, hex.
    static QString keyedDigest(const QByteArray &key, const QByteArray &message);
};
