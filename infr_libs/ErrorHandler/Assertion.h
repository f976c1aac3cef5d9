#pragma once

#include <cassert>

// An internal limit whose breach ends the process with SIGABRT and the C library's own text. Unlike
// `assert` it doesn't depend on NDEBUG: limits hold in every build type. The text shows the condition as
// it is written, so a null pointer is spelled __null where that is what the message must say.
#define ZELM_ASSERT(condition)                                                                               \
    (static_cast<bool>(condition)                                                                            \
         ? static_cast<void>(0)                                                                              \
         : endOnAssertion(#condition, __FILE__, __LINE__, static_cast<const char*>(__PRETTY_FUNCTION__)))

// Null, or what is called ahead of that end, with the condition's text. It may throw instead of returning: a
// program that reads files of any kind rather refuses one than ends by a signal. The plugin leaves it null.
inline void (*g_assertionHook)(const char* condition) = nullptr;

[[noreturn, gnu::cold, gnu::noinline]] inline void endOnAssertion(const char* condition, const char* file,
                                                                  unsigned line, const char* function) {
    if (g_assertionHook)
        g_assertionHook(condition);
    __assert_fail(condition, file, line, function);
}
