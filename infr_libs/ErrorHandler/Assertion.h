#pragma once

#include <cassert>

// An internal limit whose breach ends the process with SIGABRT and the C library's own text. Unlike
// `assert` it doesn't depend on NDEBUG: limits hold in every build type. The text shows the condition as
// it is written, so a null pointer is spelled __null where that is what the message must say.
#define ZELM_ASSERT(condition)                                                                               \
    (static_cast<bool>(condition)                                                                            \
         ? static_cast<void>(0)                                                                              \
         : __assert_fail(#condition, __FILE__, __LINE__, static_cast<const char*>(__PRETTY_FUNCTION__)))
