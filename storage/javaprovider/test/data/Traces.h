#pragma once

#include <boost/log/attributes/value_extraction.hpp>

#include <cstdint>
#include <exception>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "bridge/RecordHook.h"
#include "foundation/log/Severity.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {

/// The severities of entering (32) and leaving (64) a function.
inline constexpr std::uint32_t EnterAndExit = 32 + 64;

/// Where a traced function was entered or left, and what was said of it.
struct TracedPlace {
    std::uint32_t severity = 0;
    std::string text;
    std::string file;
    std::uint32_t line = 0;

    friend bool operator==(const TracedPlace&, const TracedPlace&) = default;
};

inline void PrintTo(const TracedPlace& place, std::ostream* out) {
    *out << "[" << place.severity << "] " << place.text << " at " << place.file << ":" << place.line;
}

[[nodiscard]] inline TracedPlace tracedPlaceOf(const boost::log::record_view& view) {
    using boost::log::extract_or_default;
    using foundation::log::Severity;
    return {static_cast<std::uint32_t>(extract_or_default<Severity>("Severity", view, Severity{})),
            extract_or_default<std::string>("Message", view, std::string()),
            extract_or_default<std::string>("File", view, std::string()),
            extract_or_default<std::uint32_t>("Line", view, 0U)};
}

/// What was recorded of entering and leaving functions while the action ran. What it throws is swallowed.
template <class Action>
[[nodiscard]] std::vector<TracedPlace> traced(Action&& action) {
    std::vector<TracedPlace> places;
    const LogCapture mask(EnterAndExit);
    const RecordHook hook([&](const boost::log::record_view& view) { places.push_back(tracedPlaceOf(view)); });
    try {
        std::forward<Action>(action)();
    } catch (const std::exception&) {
        // The exit record shows it.
    }
    return places;
}

}  // namespace storage::javaprovider::test
