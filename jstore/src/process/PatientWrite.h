#pragma once

#include <string_view>

namespace jstore {

/// Writes all of the text to a file descriptor, however long its reader takes; a signal that stops jstore ends the
/// wait.
///
/// Returns 0, the errno of the write that failed, or ECANCELED when a signal has arrived and the descriptor takes
/// nothing at the moment. What was written until then stays.
[[nodiscard]] int writePatiently(int descriptor, std::string_view text) noexcept;

}  // namespace jstore
