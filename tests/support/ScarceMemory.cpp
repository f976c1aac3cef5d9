#include "tests/support/ScarceMemory.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::size_t s_numBytesLeft = SIZE_MAX; // as much as there is

bool take(std::size_t size) {
    if (s_numBytesLeft == SIZE_MAX)
        return true;
    if (size > s_numBytesLeft)
        return false;
    s_numBytesLeft -= size;
    return true;
}

void* allocate(std::size_t size) {
    return take(size) ? std::malloc(size != 0 ? size : 1) : nullptr;
}

void* allocateOrThrow(std::size_t size) {
    void* const memory = allocate(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

void leaveMemory(std::size_t numBytes) {
    s_numBytesLeft = numBytes;
}

extern "C" int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    *memory = take(size) ? memalign(alignment, size) : nullptr;
    return *memory ? 0 : ENOMEM;
}

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}

void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
