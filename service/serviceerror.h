#pragma once
#include <QString>

#include <stdexcept>

// A refused request: the reply's non-zero "code" and its Chinese "msg".
// Thrown by handlers; CloudService turns it into the reply, so nothing after
// the throw point is written.
class ServiceError : public std::runtime_error
{
public:
    enum Code {
        BadRequest = 1,   // malformed or missing fields
        NotLoggedIn = 2,  // no or expired session
        Forbidden = 3,    // tier or role does not allow it
        NotFound = 4,     // the addressed record does not exist
        Conflict = 5,     // duplicate name and the like
        UnknownMethod = 6,
        TooManyAttempts = 7, // failed logins throttled
        Busy = 8,            // try again shortly
        Internal = 500
    };

    ServiceError(int code, const QString &message);
    int code() const { return m_code; }
    QString message() const { return m_message; }

private:
    int m_code;
    QString m_message;
};
