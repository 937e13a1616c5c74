#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/storage/events/Kind.h"
#include "storage/provider/polling/ChangeSnapshot.h"

namespace foundation::storage::provider::detail {

/// One event to report.
struct ChangeEvent {
    events::Kind kind;
    EntryType type;
    std::optional<std::u16string> child;  ///< the child that changed; empty when it is the watched location itself
};

/// The events that lead from one snapshot of a location to the next, in the order of their report: a location that is
/// gone after its children, one that has come back before them. A location whose type has changed counts as gone and
/// come. A folder's attributes change with its children, so they are reported only when no child came or went.
[[nodiscard]] std::vector<ChangeEvent> difference(const ChangeSnapshot& before, const ChangeSnapshot& after);

}  // namespace foundation::storage::provider::detail
