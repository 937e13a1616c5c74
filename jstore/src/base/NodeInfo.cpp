#include "base/NodeInfo.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

std::string textOf(const ExtendedAttributes& attributes, const char* name) {
    const auto* const value = attributes.text(name);
    return value == nullptr ? std::string() : *value;
}

}  // namespace

NodeInfo nodeInfoOf(const IProvider& provider, const StorageIRI& location) {
    try {
        const ExtendedAttributes attributes = provider.getExtendedAttributes(location);
        return {attributes.isSymbolicLink(), textOf(attributes, "basic:isOther") == "true",
                textOf(attributes, "basic:fileKey")};
    } catch (const Exception&) {
        return {};
    }
}

bool isInside(const IProvider& provider, const StorageIRI& location, const StorageIRI& folder) {
    const StorageIRI sought = folder.normalized();
    const std::string identity = nodeInfoOf(provider, folder).identity;
    for (StorageIRI above = location.normalized();; above = above.getParent()) {
        if (above == sought || (!identity.empty() && identity == nodeInfoOf(provider, above).identity)) {
            return true;
        }
        if (above.isRoot()) {
            return false;
        }
    }
}

}  // namespace jstore
