#include "tools/zetool/WholeFile.h"

#include "tools/zetool/InputFile.h"

std::string readWhole(std::string_view path) {
    constexpr std::size_t s_pieceSize = 1 << 16;
    InputFile input(path);
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(input.size()));
    for (;;) {
        const std::size_t used = bytes.size();
        bytes.resize(used + s_pieceSize);
        const std::size_t size = input.read(bytes.data() + used, s_pieceSize);
        bytes.resize(used + size);
        if (size == 0)
            return bytes;
    }
}
