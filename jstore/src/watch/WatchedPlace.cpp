#include "watch/WatchedPlace.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace jstore {

using foundation::storage::provider::StorageIRI;

std::optional<WatchedPlace::Below> WatchedPlace::find(const StorageIRI& changed) const {
    std::vector<std::u16string> names;
    // The parents of a location in normal form are in normal form too, and one of them is a root.
    StorageIRI at = changed.normalized();
    while (at != m_normal) {
        if (at.isRoot()) {
            return std::nullopt;
        }
        names.push_back(at.getName());
        at = at.getParent();
    }
    StorageIRI spelled = m_location.iri();
    std::ranges::reverse(names);
    for (const auto& name : names) {
        spelled = spelled.getChild(name);
    }
    return Below{Location(std::move(spelled)), names.size()};
}

}  // namespace jstore
