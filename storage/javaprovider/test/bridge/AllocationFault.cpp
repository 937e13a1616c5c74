#include "AllocationFault.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace storage::javaprovider::test {

namespace {

constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

thread_local std::size_t failsFrom = None;

}  // namespace

AllocationFault::AllocationFault(std::size_t bytes) noexcept { failsFrom = bytes; }

AllocationFault::~AllocationFault() { failsFrom = None; }

bool AllocationFault::happened() const noexcept { return failsFrom == None; }

/// Whether this allocation is the one that fails.
[[maybe_unused]] static bool failsNow(std::size_t bytes) noexcept {
    if (bytes < failsFrom) {
        return false;
    }
    failsFrom = None;
    return true;
}

}  // namespace storage::javaprovider::test

#ifndef TEST_ALLOCATIONS_ARE_THE_SANITIZERS

// The replaceable allocation functions of the whole test program; the array forms of the language call these.
void* operator new(std::size_t bytes) {
    void* memory = storage::javaprovider::test::failsNow(bytes) ? nullptr : std::malloc(bytes);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

#endif
