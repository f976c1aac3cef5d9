#pragma once

#include <cstddef>

// Calls of operator new so far, in the whole program. Link the library of this name to have them counted.
std::size_t numAllocations();
