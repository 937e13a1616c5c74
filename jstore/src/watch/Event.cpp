#include "watch/Event.h"

namespace jstore {

using foundation::storage::events::Kind;

const char* wordFor(Kind kind) noexcept {
    switch (kind) {
        case Kind::SelfModified:
            return "SelfModified";
        case Kind::SelfRemoved:
            return "SelfRemoved";
        case Kind::ChildAdded:
            return "ChildAdded";
        case Kind::ChildModified:
            return "ChildModified";
        case Kind::ChildRemoved:
            return "ChildRemoved";
    }
    return "Unknown";
}

}  // namespace jstore
