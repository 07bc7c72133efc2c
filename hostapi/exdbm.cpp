#include "exdbm.h"

namespace DBM {

exDBM::exDBM(const QString &message)
    : m_message(message), m_utf8(message.toUtf8())
{
}

const char *exDBM::what() const noexcept
{
    return m_utf8.constData();
}

}
