#pragma once
#include <QString>
#include <QtGlobal>

#include <exception>
#include <stdexcept>
#include <type_traits>
#include <utility>

class GuardSite;

// Reports a caught exception to the host log: what(), source file, line and
// qualified function name.
void ProcExceptionNew(const std::exception &e, const QString &file, int line, const QString &function);

namespace velora_detail {
// `e` null: not a standard exception ("未知异常"). `function` is Q_FUNC_INFO.
void reportException(const std::exception *e, const char *source, int line, const char *function);
void reportException(const std::exception *e, const GuardSite &site, int line, const char *function);
}

// The module-wide failure convention: run `body`; a standard exception is
// reported through ProcExceptionNew, anything else first becomes one carrying
// "未知异常"; the caller then gets `fallback`, its quiet default result.
// `site` is a source name or a GuardSite.
template <typename Site, typename Body, typename Result>
Result guardedCallOr(Result fallback, const Site &site, int line, const char *function, Body &&body)
{
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception &e) {
        velora_detail::reportException(&e, site, line, function);
    } catch (...) {
        velora_detail::reportException(nullptr, site, line, function);
    }
    return fallback;
}

// As above with a default-constructed (or no) result.
template <typename Site, typename Body>
auto guardedCall(const Site &site, int line, const char *function, Body &&body)
{
    using Result = std::invoke_result_t<Body &>;
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception &e) {
        velora_detail::reportException(&e, site, line, function);
    } catch (...) {
        velora_detail::reportException(nullptr, site, line, function);
    }
    if constexpr (!std::is_void_v<Result>)
        return Result();
}

// GUARDED("Qddjyjc", [&] { ... }): the function and line of the report are the
// caller's. A shared component passes its GuardSite instead of a source name.
#define GUARDED(site, ...) guardedCall(site, __LINE__, Q_FUNC_INFO, __VA_ARGS__)
#define GUARDED_OR(fallback, site, ...) guardedCallOr(fallback, site, __LINE__, Q_FUNC_INFO, __VA_ARGS__)
