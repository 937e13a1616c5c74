#include "java/Feature.h"

#include <future>

namespace jstore {

using foundation::storage::provider::ExtendedFeature;
using foundation::storage::provider::IProvider;

bool hasFeature(const IProvider& provider, ExtendedFeature feature) {
    return std::async(std::launch::async, [&] { return provider.hasFeature(feature); }).get();
}

}  // namespace jstore
