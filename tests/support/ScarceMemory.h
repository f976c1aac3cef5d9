#pragma once

#include <cstddef>

// Lets a test run out of memory, under the sanitizers too, which don't heed the limits of a process: a
// program that uses this has `new`, `delete` and `posix_memalign` of its own. `malloc` is left alone.

// From now on these give so many bytes in all, and then fail in their own way; what is freed isn't given
// again. For a child process, since there is no way back.
void leaveMemory(std::size_t numBytes);
