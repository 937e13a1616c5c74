#pragma once

namespace foundation::storage::events {

/// What happened to a watched location ("self") or to an entry below it ("child").
enum class Kind : int { SelfModified = 0, SelfRemoved = 1, ChildAdded = 2, ChildModified = 3, ChildRemoved = 4 };

}  // namespace foundation::storage::events
