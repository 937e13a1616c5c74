#pragma once

#include <cstddef>

#include "base/Location.h"
#include "work/Context.h"

namespace jstore {

/// The last argument of a verb that brings sources to a place: the place itself, or a folder that takes them in.
class Destination {
public:
    /// Asks the back end what is there. Throws CommandError with NotAFolder when several sources have no folder to go
    /// to, and for whatever the back end fails with.
    Destination(Context& context, Location location, std::size_t sources);

    /// Where the source goes. Throws CommandError with AccessDenied for a root, which has no name to go by into a
    /// folder; `deed` completes "a root cannot be …".
    [[nodiscard]] Location targetOf(const Location& source, const char* deed) const;

private:
    Location m_location;
    bool m_isFolder;
};

}  // namespace jstore
