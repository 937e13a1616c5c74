#include "work/Hints.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "base/Text.h"
#include "java/ClassPath.h"

namespace jstore {

namespace {

/// `name` of "java://name/path".
std::string_view mountName(std::string_view location) {
    constexpr std::string_view begin = "java://";
    if (!location.starts_with(begin)) {
        return {};
    }
    location.remove_prefix(begin.size());
    return location.substr(0, location.find('/'));
}

}  // namespace

std::string hintFor(const Problem& problem, const Options& options) {
    const std::string_view name = mountName(problem.location);
    if (problem.code != "Unavailable" || name.empty() || slashed(options.provider) != slashed(DefaultProvider)) {
        return {};
    }
    const auto isIt = [&](const Mount& mount) { return mount.name == name; };
    if (std::any_of(options.mounts.begin(), options.mounts.end(), isIt)) {
        return problem.reason.empty() ? "the mount cannot be opened; jstore doctor with the same --mount may show why"
                                      : "";
    }
    return fmt::format("there is no such mount; add --mount {}=URI", printable(name));
}

void addHint(Problem& problem, const Options& options) {
    if (problem.text.empty()) {
        problem.text = hintFor(problem, options);
    }
}

}  // namespace jstore
