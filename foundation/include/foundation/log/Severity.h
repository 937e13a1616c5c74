#pragma once

#include <cstdint>

namespace foundation::log {

/// What a diagnostic record is about. Each value is one bit of a channel's severity mask.
enum class Severity : std::uint32_t {
    Arguments = 2,  ///< arguments at function entry
    Progress = 4,   ///< steps of a longer search, start of a disposal
    Caught = 16,    ///< an exception that was caught and goes no further
    Enter = 32,     ///< a traced function is entered
    Exit = 64,      ///< a traced function is left
    Failure = 512,  ///< something was not found or could not be made
};

/// A mask with every severity switched on.
inline constexpr std::uint32_t AllSeverities = 0xFFFFFFFFU;

}  // namespace foundation::log
