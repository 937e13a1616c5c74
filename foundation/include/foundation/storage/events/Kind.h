#pragma once

namespace foundation::storage::events {

/// What happened to a location that is watched.
enum class Kind : int { SelfModified = 0, SelfRemoved = 1, ChildAdded = 2, ChildModified = 3, ChildRemoved = 4 };

}  // namespace foundation::storage::events
