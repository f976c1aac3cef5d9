#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

// Releases an array of bytes as it was made: users give arrays from `new[]`, the readers take theirs from
// `newZeroBytes`.
struct ElfBytesDeleter {
    bool isFromCalloc = false;

    void operator()(unsigned char* bytes) const {
        if (isFromCalloc)
            std::free(bytes);
        else
            delete[] bytes;
    }
};

using ElfBytes = std::unique_ptr<unsigned char[], ElfBytesDeleter>;

// So many zeros, or null where they can't be had. A file may claim many bytes that it doesn't hold: zeros
// that nobody writes cost room for addresses, but next to no memory and time.
inline ElfBytes newZeroBytes(std::size_t numBytes) {
    void* bytes = std::calloc(numBytes != 0 ? numBytes : 1, 1);
    return ElfBytes(static_cast<unsigned char*>(bytes), {.isFromCalloc = true});
}
