#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <string>

#include "foundation/storage/events/Kind.h"
#include "foundation/storage/provider/EntryType.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

/// A change as the back end reported it, and when.
struct Event {
    foundation::storage::events::Kind kind{};
    foundation::storage::provider::StorageIRI watched;
    foundation::storage::provider::StorageIRI changed;
    foundation::storage::provider::EntryType type{};
    std::string originId;  ///< who made the change; empty when the back end does not know
    boost::posix_time::ptime time;
};

/// "ChildAdded", "SelfRemoved" and so on.
[[nodiscard]] const char* wordFor(foundation::storage::events::Kind kind) noexcept;

}  // namespace jstore
