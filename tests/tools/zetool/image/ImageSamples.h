#pragma once

#include "tests/support/ImageBuilder.h"

// The image of the container format's page: a network of one byte, the flat image of core 2 on node 1, the
// jump to its entry point, and the end.
inline ImageBuilder pageImage() {
    return ImageBuilder().zn("A").binary(1, 2, 0x10000, "core!").jump(1, 2, 0x10004).end();
}
