// Reads the input as an ELF file, with a handler that throws and with one that goes on, and asks for
// everything that it holds.

#include "tests/support/ElfFuzzing.h"
#include "tests/support/ElfWalk.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readBothWays(std::string(reinterpret_cast<const char*>(data), size), walkReadElf);
    return 0;
}
