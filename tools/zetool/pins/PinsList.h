#pragma once

#include "tools/zetool/Invocation.h"

// zetool pins list: the pins of an image, or its ports or links, with what is connected.
int pinsList(const Invocation& invocation);
