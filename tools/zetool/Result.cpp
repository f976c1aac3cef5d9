#include "tools/zetool/Result.h"

OutputFile resultFile(const Invocation& invocation) {
    return {invocation.has("output") ? invocation.value("output") : "-", invocation.has("force")};
}
