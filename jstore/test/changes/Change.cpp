#include "changes/Change.h"

#include <stdexcept>

#include "fl/i18n/text.h"

namespace jstore::test {

using foundation::storage::provider::StorageIRI;

std::string pathBelow(const StorageIRI& folder, const StorageIRI& location) {
    const auto top = folder.normalized();
    std::string path;
    for (auto at = location.normalized(); at != top; at = at.getParent()) {
        if (at.isRoot()) {
            throw std::invalid_argument(fl::i18n::to_string(location.text()) + " is not in the watched folder");
        }
        path = fl::i18n::to_string(at.getName()) + (path.empty() ? "" : '/' + path);
    }
    return path;
}

}  // namespace jstore::test
