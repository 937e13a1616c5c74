#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "InMemoryProvider.h"

namespace foundation::test {

/// A tree that is made up while it is listed. It counts the entries that its listings hold: all of a listing's, as long
/// as the listing or a clone of it is alive.
class GeneratedTree final : public InMemoryProvider {
public:
    /// The entries of a folder at a depth; the root of the tree is at 0.
    using Generator = std::function<std::vector<storage::provider::FolderEntry>(std::size_t depth)>;

    struct Count {
        std::size_t now = 0;
        std::size_t most = 0;
    };

    explicit GeneratedTree(Generator generator) : m_generator(std::move(generator)) {}

    [[nodiscard]] const Count& held() const noexcept { return *m_held; }
    [[nodiscard]] static StorageIRI root() { return StorageIRI(u"java://tree"); }

protected:
    std::unique_ptr<storage::provider::IFolderEntryIterator> doListAll(const StorageIRI& folder) const override;
    storage::provider::ExtendedAttributes doGetExtendedAttributes(const StorageIRI&) const override { return {}; }

private:
    Generator m_generator;
    std::shared_ptr<Count> m_held = std::make_shared<Count>();
};

}  // namespace foundation::test
