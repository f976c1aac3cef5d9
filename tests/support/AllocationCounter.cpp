#include "tests/support/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t s_numAllocations = 0;

void* allocate(std::size_t numBytes) {
    ++s_numAllocations;
    if (void* memory = std::malloc(numBytes != 0 ? numBytes : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

std::size_t numAllocations() {
    return s_numAllocations;
}

void* operator new(std::size_t numBytes) {
    return allocate(numBytes);
}

void* operator new[](std::size_t numBytes) {
    return allocate(numBytes);
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
