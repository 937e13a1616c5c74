#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace storage::jvm::detail {

/// A function that a library imports, and the function of the same type that replaces it.
struct Import {
    const char* name;
    void* replacement;
};

/// Redirects calls that one loaded library makes to functions of other libraries, for the life of a scope. Calls of the
/// rest of the process stay as they are.
///
/// Changes the library's table of imported functions. A function that is not in the table is left out; a table that the
/// system protects stays as it is. The library must stay loaded. One object at a time for each library.
class RedirectedImports final {
public:
    /// `inside` is the address of anything in the library.
    RedirectedImports(const void* inside, std::span<const Import> imports);
    ~RedirectedImports();

    RedirectedImports(const RedirectedImports&) = delete;
    RedirectedImports& operator=(const RedirectedImports&) = delete;

private:
    /// Makes the table's memory writable, or read-only again. Returns whether that succeeded.
    [[nodiscard]] bool makeWritable(bool writable) const;

    std::vector<std::pair<void**, void*>> m_before;  ///< each place that was changed, with what it held
    std::byte* m_protected = nullptr;                ///< what the linker has protected after it filled the table
    std::size_t m_length = 0;
};

}  // namespace storage::jvm::detail
