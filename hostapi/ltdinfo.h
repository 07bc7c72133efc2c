#pragma once
#include <QString>

// One selectable cloud server entry. Owned by the host's server registry; the
// module only holds pointers.
class LtdInfo
{
public:
    LtdInfo() = default;
    LtdInfo(const QString &name, const QString &token, int type, int qyid, bool loggedIn = false);

    QString getServerName() const { return m_name; }
    bool getServerLogin() const { return m_login; }
    QString getToken() const { return m_token; }
    int getType() const { return m_type; }
    int getQyid() const { return m_qyid; }

    void setServerName(const QString &name) { m_name = name; }
    void setServerLogin(bool login) { m_login = login; }
    void setToken(const QString &token) { m_token = token; }
    void setType(int type) { m_type = type; }
    void setQyid(int qyid) { m_qyid = qyid; }

    // Server kind as the host's server list gives it ("kv", "pri", "cj", ...).
    QString kind() const { return m_kind; }
    void setKind(const QString &kind) { m_kind = kind; }

private:
    QString m_name;
    QString m_token;
    QString m_kind;
    int m_type = 0;
    int m_qyid = 0;
    bool m_login = false;
};
