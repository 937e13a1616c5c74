#pragma once

#include <string_view>

namespace jstore {

/// Writes all of the text to a file descriptor, however long its reader takes. A signal that stops jstore ends the
/// wait.
///
/// Returns 0, the errno of the write that failed, or ECANCELED if a signal has arrived and the descriptor takes nothing
/// now. Part of the text may then have been written.
[[nodiscard]] int writePatiently(int descriptor, std::string_view text) noexcept;

}  // namespace jstore
