#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/storage/events/Kind.h"
#include "storage/provider/polling/ChangeSnapshot.h"

namespace foundation::storage::provider::detail {

/// One event to be told.
struct ChangeEvent {
    events::Kind kind;
    EntryType type;
    std::optional<std::u16string> child;  ///< the child that changed; empty when it is the watched location itself
};

/// The events that lead from one snapshot of a location to the next, in the order in which they are told: a location
/// that goes comes after its children, one that is back comes before them. What has another type than before went and
/// another came. A folder's attributes move with its children, so they are told only when no child came or went.
[[nodiscard]] std::vector<ChangeEvent> difference(const ChangeSnapshot& before, const ChangeSnapshot& after);

}  // namespace foundation::storage::provider::detail
