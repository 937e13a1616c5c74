#pragma once

#include <boost/property_tree/ptree.hpp>

#include <functional>

#include "foundation/storage/events/Kind.h"
#include "foundation/storage/provider/EntryType.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider {

/// Receives change events: the kind, the watched location, the location that changed, its type, and details. The detail
/// "originId" names who made the change; it is empty if the back end does not know.
///
/// **From startChangeNotification().** It is called on threads of the back end, possibly several at once. It must not
/// throw: an exception that leaves it may end the process. The provider keeps a copy until it is destroyed.
///
/// **From startChangePollingMechanism()**, as IProvider implements it. One thread per provider scans all locations in
/// turn and delivers one event at a time; the thread ends when the last location is stopped. The callback may use the
/// provider, and start and stop polling. What it throws is logged on the channel `foundation::storage` and dropped. Of
/// consecutive failed scans of a location, only the first is logged there. "originId" is always empty.
///
/// A scan compares what the provider's own operations report with the previous scan: for a file its attributes, for a
/// folder its attributes and those of its direct children. Whatever comes and goes between two scans is not seen.
///  - A child is added, removed or modified. Modified means that its size, modification time or write permission
///    changed.
///  - A child that was a file and is now a folder, or the reverse, is reported as removed and added. If this happens to
///    the location itself, it is reported as if it had disappeared and come back; see below.
///  - The location itself is modified in the same sense. A folder is not reported as modified if children were added or
///    removed, because that changes its time.
///  - If the location disappears, its children are reported as removed, then the location itself. Scanning continues;
///    when something is there again, the location is reported as modified and its children as added.
///  - What cannot be scanned (Unavailable, AccessDenied, any error) counts as unchanged until it can be.
using ChangeCallback = std::function<void(const events::Kind&, const StorageIRI&, const StorageIRI&, const EntryType&,
                                          boost::property_tree::ptree)>;

}  // namespace foundation::storage::provider
