#include "functionname.h"

#include <QByteArray>

namespace {
bool isIdentifierChar(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Start of the qualified name that ends at `end`: back over scopes and
// template arguments to the blank, '*' or '&' after the return type.
int nameStart(const QByteArray &s, int end)
{
    int depth = 0;
    for (int i = end - 1; i >= 0; --i) {
        const char c = s.at(i);
        if (c == '>' || c == ')')
            ++depth;
        else if (c == '<' || c == '(')
            --depth;
        else if (depth == 0 && (c == ' ' || c == '*' || c == '&'))
            return i + 1;
    }
    return 0;
}

// Where the operator keyword of an operator's name starts; -1 for others.
int operatorStart(const QByteArray &s)
{
    static const QByteArray keyword("operator");
    for (int at = s.lastIndexOf(keyword); at >= 0; at = at > 0 ? s.lastIndexOf(keyword, at - 1) : -1) {
        const int after = at + keyword.size();
        const bool startsWord = at == 0 || !isIdentifierChar(s.at(at - 1));
        const bool endsWord = after >= s.size() || !isIdentifierChar(s.at(after));
        if (startsWord && endsWord)
            return at;
    }
    return -1;
}

// Position of the '(' that opens the parameter list closed at `close`.
int openingParenthesis(const QByteArray &s, int close)
{
    int depth = 0;
    for (int i = close; i >= 0; --i) {
        if (s.at(i) == ')')
            ++depth;
        else if (s.at(i) == '(' && --depth == 0)
            return i;
    }
    return -1;
}
}

FunctionName::FunctionName(const char *prettyFunction)
{
    QByteArray s(prettyFunction ? prettyFunction : "");
    // Template arguments spelled after the signature: " [with T = int]".
    if (s.endsWith(']') && s.lastIndexOf(" [") >= 0)
        s.truncate(s.lastIndexOf(" ["));
    const int nested = s.indexOf(")::");
    if (nested >= 0)
        s.truncate(nested + 1);
    const int close = s.lastIndexOf(')');
    const int open = close >= 0 ? openingParenthesis(s, close) : -1;
    if (open >= 0)
        s.truncate(open);
    s = s.trimmed();

    const int op = operatorStart(s);
    const int start = nameStart(s, op >= 0 ? op : s.size());
    int split = op >= 0 ? op : start;
    if (op < 0) {
        // The member follows the last "::" outside template arguments.
        int depth = 0;
        for (int i = start; i + 1 < s.size(); ++i) {
            const char c = s.at(i);
            if (c == '<' || c == '(')
                ++depth;
            else if (c == '>' || c == ')')
                --depth;
            else if (depth == 0 && c == ':' && s.at(i + 1) == ':')
                split = i + 2;
        }
    }
    QByteArray scope = s.mid(start, split - start);
    const QByteArray member = s.mid(split);
    // Anonymous namespaces add nothing a reader could look up.
    scope.replace("{anonymous}::", "").replace("(anonymous namespace)::", "");
    if (scope.endsWith("::"))
        scope.chop(2);
    m_scope = QString::fromUtf8(scope);
    m_member = QString::fromUtf8(member);
}

QString FunctionName::qualified() const
{
    return m_scope.isEmpty() ? m_member : m_scope + QStringLiteral("::") + m_member;
}
