#pragma once
// Constants of the host core library. The module compares against them and
// never spells the values out itself.
#include <QString>

// Token of the personal-cloud server entry (exact match).
inline const QString KvTokenUser = QStringLiteral("kv_token_user");
// Token of the Korvane-cloud entry (exact match). It is also a substring of
// KvTokenUser, so both Korvane-account entries share the Korvane login dialog.
inline const QString KvToken = QStringLiteral("kv_token");

// Folder of the local databases below the application folder, and the SQLite
// file suffix. Paths are formed by plain concatenation.
inline const QString C_Database_Dir = QStringLiteral("Database/");
inline const QString C_Db_Sqlite_Suffix = QStringLiteral(".db");
// Folder of the system settings below the application folder ("SysSet_.ini").
inline const QString GCSZDir = QStringLiteral("Config/");

// Base names of the four bill standard libraries (清单规范库).
inline const QString CXMQGQDEnName = QStringLiteral("QGQD");
inline const QString CXMN8QDEnName = QStringLiteral("N8QD");
inline const QString CXMN3QDEnName = QStringLiteral("N3QD");
inline const QString CXMGB24EnName = QStringLiteral("GB24");

// Kind names of the two measure-item bill kinds (data role 1042, upper-cased).
inline const QString CXMZJXQDAEnName = QStringLiteral("ZJXQDA");
inline const QString CXMZJXQDBEnName = QStringLiteral("ZJXQDB");
