#pragma once

#include <cstddef>

namespace storage::javaprovider::test {

/// While it lives, the calling thread's first C++ allocation of at least `bytes` throws std::bad_alloc; later ones
/// succeed. Java's own memory and the small allocations of recorders are not touched.
class AllocationFault {
public:
    explicit AllocationFault(std::size_t bytes) noexcept;
    ~AllocationFault();

    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;

    /// Whether an allocation has failed.
    [[nodiscard]] bool happened() const noexcept;
};

}  // namespace storage::javaprovider::test
