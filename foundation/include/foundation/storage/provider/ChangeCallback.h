#pragma once

#include <boost/property_tree/ptree.hpp>

#include <functional>

#include "foundation/storage/events/Kind.h"
#include "foundation/storage/provider/EntryType.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider {

/// Receives change events: the kind, the watched location, the location that changed, its type, and details
/// ("originId" names who made the change, where the back end knows).
///
/// Called on threads of the provider, possibly several at once, and must not throw: an exception that leaves it may end
/// the process. A copy is kept until the provider is destroyed.
using ChangeCallback = std::function<void(const events::Kind&, const StorageIRI&, const StorageIRI&, const EntryType&,
                                          boost::property_tree::ptree)>;

}  // namespace foundation::storage::provider
