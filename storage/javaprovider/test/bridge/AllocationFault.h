#pragma once

#include <cstddef>

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TEST_ALLOCATIONS_ARE_THE_SANITIZERS
#endif
#endif

namespace storage::javaprovider::test {

/// While it lives, the calling thread's first C++ allocation of at least `bytes` throws std::bad_alloc; later ones
/// succeed. Java's own memory and the small allocations of recorders are not touched.
class AllocationFault {
public:
    /// ThreadSanitizer does not let a program replace the allocation functions: nothing fails under it.
#ifdef TEST_ALLOCATIONS_ARE_THE_SANITIZERS
    static constexpr bool Possible = false;
#else
    static constexpr bool Possible = true;
#endif

    explicit AllocationFault(std::size_t bytes) noexcept;
    ~AllocationFault();

    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;

    /// Whether an allocation has failed.
    [[nodiscard]] bool happened() const noexcept;
};

}  // namespace storage::javaprovider::test
