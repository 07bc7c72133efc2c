#include "serviceerror.h"

ServiceError::ServiceError(int code, const QString &message)
    : std::runtime_error(message.toStdString())
    , m_code(code)
    , m_message(message)
{
}
