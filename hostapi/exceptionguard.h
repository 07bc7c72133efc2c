#pragma once
#include <QString>

#include <exception>
#include <stdexcept>
#include <type_traits>
#include <utility>

// Reports a caught exception to the host log: what(), source file, line and
// qualified function name.
void ProcExceptionNew(const std::exception &e, const QString &file, int line, const QString &function);

namespace velora_detail {
void reportUnknownException(const char *file, int line, const char *function);
void reportException(const std::exception &e, const char *file, int line, const char *function);
}

// The module-wide failure convention: run `body`; a standard exception is
// reported through ProcExceptionNew, anything else first becomes one carrying
// "未知异常"; the caller then gets `fallback`, its quiet default result.
template <typename Body, typename Result>
Result guardedCallOr(Result fallback, const char *file, int line, const char *function, Body &&body)
{
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception &e) {
        velora_detail::reportException(e, file, line, function);
    } catch (...) {
        velora_detail::reportUnknownException(file, line, function);
    }
    return fallback;
}

// As above with a default-constructed (or no) result.
template <typename Body>
auto guardedCall(const char *file, int line, const char *function, Body &&body)
{
    using Result = std::invoke_result_t<Body &>;
    try {
        return std::forward<Body>(body)();
    } catch (const std::exception &e) {
        velora_detail::reportException(e, file, line, function);
    } catch (...) {
        velora_detail::reportUnknownException(file, line, function);
    }
    if constexpr (!std::is_void_v<Result>)
        return Result();
}

// GUARDED("Qddjyjc", "TQdtjyjc::NextStep", [&] { ... });
#define GUARDED(file, function, ...) guardedCall(file, __LINE__, function, __VA_ARGS__)
#define GUARDED_OR(fallback, file, function, ...) guardedCallOr(fallback, file, __LINE__, function, __VA_ARGS__)
