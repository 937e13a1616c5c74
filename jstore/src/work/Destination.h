#pragma once

#include <cstddef>

#include "base/Location.h"
#include "work/Context.h"

namespace jstore {

/// The last argument of cp and mv: the target itself, or a folder that receives the sources.
class Destination {
public:
    /// Asks the back end what is there. Throws CommandError with NotAFolder if there are several sources and no folder,
    /// and for a failure of the back end.
    Destination(Context& context, Location location, std::size_t sources);

    /// Where the source goes. Throws CommandError with AccessDenied for a root, which has no name that it could have in
    /// a folder; `deed` completes "a root cannot be …".
    [[nodiscard]] Location targetOf(const Location& source, const char* deed) const;

private:
    Location m_location;
    bool m_isFolder;
};

}  // namespace jstore
