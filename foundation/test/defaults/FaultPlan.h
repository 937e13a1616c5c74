#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::test {

/// Counts the operations of a provider and its streams, and says which of them fails. Used by one thread at a time.
class FaultPlan {
public:
    enum class Mode {
        Once,         ///< one operation fails and does nothing; a write gets half of its bytes through
        Lasting,      ///< so do all that follow, as if the storage had gone
        AfterEffect,  ///< a move or a close that fails has done its work even so; other operations fail as with Once
        Foreign,      ///< as Once, but what is thrown is no Exception of a provider
    };

    /// From now on the n-th operation fails, counted from 1; 0 for none.
    void failAt(int n, Mode mode);

    /// Counts an operation. True if it has to fail once it has done its work; throws if it has to fail at once.
    [[nodiscard]] bool begin(std::string_view operation, const storage::provider::StorageIRI& location);

    /// Throws the planned error.
    [[noreturn]] void fail(const storage::provider::StorageIRI& location) const;

    /// Whether the failure has been met.
    [[nodiscard]] bool met() const noexcept {
        return m_failAt != 0 && static_cast<int>(m_operations.size()) >= m_failAt;
    }

    /// The operations since failAt(), in order.
    [[nodiscard]] const std::vector<std::string>& operations() const noexcept { return m_operations; }

private:
    std::vector<std::string> m_operations;
    int m_failAt = 0;
    Mode m_mode = Mode::Once;
};

}  // namespace foundation::test
