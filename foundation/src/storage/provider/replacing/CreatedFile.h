#pragma once

#include "foundation/storage/provider/IProvider.h"

namespace foundation::storage::provider::detail {

/// A file that has just been created, and is removed again at the end of the scope unless it is kept.
class CreatedFile final {
public:
    /// Creates the file and throws what that throws. The provider must outlive this object.
    CreatedFile(const IProvider& provider, const StorageIRI& location);
    CreatedFile(CreatedFile&& other) noexcept;
    CreatedFile& operator=(CreatedFile&&) = delete;
    ~CreatedFile();

    [[nodiscard]] const StorageIRI& location() const noexcept { return m_location; }

    /// Leaves the file where it is from now on.
    void keep() noexcept { m_mine = false; }

    /// Removes the file now and reports a failure, unless it has been kept or removed.
    void remove();

private:
    const IProvider* m_provider;
    StorageIRI m_location;
    bool m_mine = true;
};

}  // namespace foundation::storage::provider::detail
