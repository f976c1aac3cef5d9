#pragma once

#include "tools/zetool/Invocation.h"

// zetool image build: packs a network, a configuration and programs into an image file.
int imageBuild(const Invocation& invocation);
