#pragma once

#include <cstdint>

namespace foundation::log {

/// The kind of a diagnostic record. Each value is one bit of a channel's severity mask.
enum class Severity : std::uint32_t {
    Arguments = 2,  ///< the arguments at function entry
    Progress = 4,   ///< a step of a longer search, the start of a disposal
    Caught = 16,    ///< an exception that was caught and not rethrown
    Enter = 32,     ///< entry into a traced function
    Exit = 64,      ///< exit from a traced function
    Failure = 512,  ///< something was not found or could not be created
};

/// A mask with all severities enabled.
inline constexpr std::uint32_t AllSeverities = 0xFFFFFFFFU;

}  // namespace foundation::log
