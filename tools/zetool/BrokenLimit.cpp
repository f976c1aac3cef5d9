#include "tools/zetool/BrokenLimit.h"

#include "infr_libs/ErrorHandler/Assertion.h"

void refuseBrokenLimits() {
    g_assertionHook = [](const char* condition) { throw BrokenLimit(condition); };
}
