#pragma once
#include <QString>

// The host application folder, always ending with '/'. In the standalone host
// it is a per-user data folder; the environment variable VELORA_APP_DIR
// overrides it so that tests and parallel instances never share files.
QString GetAppPath();

// Overrides the application folder for this process (tests, --app-dir).
void SetAppPath(const QString &dir);

// GetAppPath() + C_Database_Dir + base + C_Db_Sqlite_Suffix.
QString HostDatabasePath(const QString &baseName);
