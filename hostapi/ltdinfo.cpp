#include "ltdinfo.h"

LtdInfo::LtdInfo(const QString &name, const QString &token, int type, int qyid, bool loggedIn)
    : m_name(name), m_token(token), m_type(type), m_qyid(qyid), m_login(loggedIn)
{
}
