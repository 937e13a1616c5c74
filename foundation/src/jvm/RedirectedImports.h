#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace storage::jvm::detail {

/// A function that a library takes from others, and what stands in for it: a function of the same type.
struct Import {
    const char* name;
    void* replacement;
};

/// Leads calls that a loaded library makes to functions of other libraries elsewhere, for the life of a scope. Calls of
/// the rest of the process stay as they are.
///
/// The library's table of imported functions is changed. One that is not there, or that the system keeps from being
/// changed, is left as it is. The library must stay loaded; one object at a time for each.
class RedirectedImports final {
public:
    /// `inside` is the address of anything in the library.
    RedirectedImports(const void* inside, std::span<const Import> imports);
    ~RedirectedImports();

    RedirectedImports(const RedirectedImports&) = delete;
    RedirectedImports& operator=(const RedirectedImports&) = delete;

private:
    /// Makes the table's memory writable, or as it was. Returns whether it is.
    [[nodiscard]] bool makeWritable(bool writable) const;

    std::vector<std::pair<void**, void*>> m_before;  ///< each place that was changed, with what it held
    std::byte* m_protected = nullptr;                ///< what the linker has protected after it filled the table
    std::size_t m_length = 0;
};

}  // namespace storage::jvm::detail
