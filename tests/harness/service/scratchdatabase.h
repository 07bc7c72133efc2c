#pragma once
#include <QString>

// A fresh PostgreSQL database for one test when the test runs in its
// PostgreSQL variant (VELORA_TEST_STORE=postgresql), on the cluster named by
// VELORA_TEST_PG (scripts/pg-scratch.sh starts one); dropped again on
// destruction. In the SQLite variant it is nothing and url() is empty.
class ScratchDatabase
{
public:
    // A copy of `templateDb` (one made earlier by this class) when given.
    explicit ScratchDatabase(const QString &templateDb = QString());
    ~ScratchDatabase();
    ScratchDatabase(const ScratchDatabase &) = delete;
    ScratchDatabase &operator=(const ScratchDatabase &) = delete;

    QString url() const;
    QString name() const { return m_name; }

    static bool wanted();
    // Why the PostgreSQL variant cannot run here; empty when it can.
    static QString skipReason();

private:
    static void admin(const QString &statement);
    QString m_name;
};
