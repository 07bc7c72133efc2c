#pragma once
#include <QString>

// A function's name as the compiler spells it in Q_FUNC_INFO, reduced to
// scope and member: "LtdInfo* TInitial::getCurrServer() const" gives
// "TInitial" and "getCurrServer". A lambda or local class counts as the
// function it is written in.
class FunctionName
{
public:
    explicit FunctionName(const char *prettyFunction);

    QString scope() const { return m_scope; }
    QString member() const { return m_member; }
    // "TInitial::getCurrServer"; the member alone for a free function.
    QString qualified() const;

private:
    QString m_scope;
    QString m_member;
};
