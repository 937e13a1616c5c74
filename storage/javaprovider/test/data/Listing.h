#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/storage/provider/IFolderEntryIterator.h"

namespace storage::javaprovider::test {

/// A child's name and what it is.
using Child = std::pair<std::u16string, foundation::storage::provider::EntryType>;

/// All that the iterator still has.
[[nodiscard]] inline std::vector<Child> rest(foundation::storage::provider::IFolderEntryIterator& iterator) {
    std::vector<Child> children;
    while (iterator.hasMore()) {
        iterator.advance();
        children.emplace_back(iterator.getCurrent().name(), iterator.getCurrent().type());
    }
    return children;
}

[[nodiscard]] inline std::vector<Child> childrenOf(
    const std::unique_ptr<foundation::storage::provider::IFolderEntryIterator>& iterator) {
    return rest(*iterator);
}

}  // namespace storage::javaprovider::test
