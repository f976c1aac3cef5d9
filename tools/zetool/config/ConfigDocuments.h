#pragma once

#include "tools/zetool/Invocation.h"

// zetool config default, complete and template: documents that come from the schema.
int configDefault(const Invocation& invocation);
int configComplete(const Invocation& invocation);
int configTemplate(const Invocation& invocation);
