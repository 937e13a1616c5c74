#include "base/Facts.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

std::string textOf(const ExtendedAttributes& attributes, const char* name) {
    const auto found = attributes.all().find(name);
    if (found == attributes.all().end()) {
        return {};
    }
    const auto* value = boost::any_cast<std::string>(&found->second);
    return value == nullptr ? std::string() : *value;
}

}  // namespace

Facts factsOf(const IProvider& provider, const StorageIRI& location) {
    try {
        const auto attributes = provider.getExtendedAttributes(location);
        return {textOf(attributes, "basic:isSymbolicLink") == "true", textOf(attributes, "basic:isOther") == "true",
                textOf(attributes, "basic:fileKey")};
    } catch (const Exception&) {
        return {};
    }
}

bool isSame(const IProvider& provider, const StorageIRI& one, const StorageIRI& other) {
    if (one.normalized() == other.normalized()) {
        return true;
    }
    const auto identity = factsOf(provider, one).identity;
    return !identity.empty() && identity == factsOf(provider, other).identity;
}

bool isInside(const IProvider& provider, const StorageIRI& location, const StorageIRI& folder) {
    const auto sought = folder.normalized();
    const auto identity = factsOf(provider, folder).identity;
    for (auto above = location.normalized();; above = above.getParent()) {
        if (above == sought || (!identity.empty() && identity == factsOf(provider, above).identity)) {
            return true;
        }
        if (above.isRoot()) {
            return false;
        }
    }
}

}  // namespace jstore
