#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "network/IriParts.h"
#include "network/percent.h"

namespace foundation::storage::provider::detail {

/// A location split for moving up and down: what stands before the path, and the names along the path as they are
/// spelled. Views into the location's text, without query and fragment.
struct PathNames {
    std::u16string_view prefix;
    bool absolute = false;
    std::vector<std::u16string_view> names;
};

/// 1 for a segment that means "here" and 2 for one that means "up", with their dots escaped or not; 0 for a name.
inline int dotsOf(std::u16string_view segment) noexcept {
    int dots = 0;
    while (!segment.empty()) {
        const bool escaped = network::detail::startsEscape(segment, 0);
        if ((escaped ? network::detail::escapedByte(segment, 0) : segment[0]) != '.') {
            return 0;
        }
        segment.remove_prefix(escaped ? 3 : 1);
        ++dots;
    }
    return dots <= 2 ? dots : 0;
}

/// Adds a segment to the names. An empty one adds nothing; dots are resolved if the path has a beginning to stop at.
inline void addSegment(PathNames& path, std::u16string_view segment) {
    const int dots = path.absolute ? dotsOf(segment) : 0;
    if (dots == 0 && !segment.empty()) {
        path.names.push_back(segment);
    } else if (dots == 2 && !path.names.empty()) {
        path.names.pop_back();
    }
}

inline PathNames splitPath(std::u16string_view text) {
    const network::detail::IriParts parts = network::detail::splitIri(text);
    PathNames result{parts.prefix, parts.hasAuthority || parts.path.starts_with(u'/'), {}};
    for (std::u16string_view rest = parts.path; !rest.empty();) {
        const std::u16string_view segment = rest.substr(0, rest.find(u'/'));
        addSegment(result, segment);
        rest.remove_prefix(segment.size() == rest.size() ? segment.size() : segment.size() + 1);
    }
    return result;
}

/// The text of the location, without query and fragment, and with a trailing slash only for a root.
inline std::u16string join(const PathNames& path) {
    std::u16string text(path.prefix);
    if (path.absolute && path.names.empty()) {
        text.push_back(u'/');
    }
    bool slash = path.absolute;
    for (const std::u16string_view name : path.names) {
        if (slash) {
            text.push_back(u'/');
        }
        text.append(name);
        slash = true;
    }
    return text;
}

}  // namespace foundation::storage::provider::detail
