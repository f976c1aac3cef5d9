#pragma once

#include "tools/zetool/Invocation.h"

// zetool xml show: the tree that the parser makes of a document.
int xmlShow(const Invocation& invocation);
