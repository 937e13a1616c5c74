#include "watch/WatchedPlace.h"

#include <string>
#include <utility>
#include <vector>

namespace jstore {

using foundation::storage::provider::StorageIRI;

std::optional<WatchedPlace::Below> WatchedPlace::find(const StorageIRI& changed) const {
    std::vector<std::u16string> names;
    // The parent of a normal form is one, and a root among them is the end in any case.
    StorageIRI at = changed.normalized();
    while (at != m_normal) {
        if (at.isRoot()) {
            return std::nullopt;
        }
        names.push_back(at.getName());
        at = at.getParent();
    }
    StorageIRI spelled = m_location.iri();
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        spelled = spelled.getChild(*name);
    }
    return Below{Location(std::move(spelled)), names.size()};
}

}  // namespace jstore
