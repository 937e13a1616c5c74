#pragma once

#include <cstddef>
#include <string_view>

namespace jstore {

/// Standard error as a terminal with one line that comes and goes. Knows nothing of what others write.
class Terminal {
public:
    /// Whether a line may be drawn at all: standard error is a terminal that can move its cursor, and standard output
    /// is not a pipe, whose reader might draw on the same terminal.
    [[nodiscard]] static bool canDraw();

    /// The columns of a line; asked anew each time, since people resize windows.
    [[nodiscard]] static std::size_t columns();

    /// Whether the process may write now: one in the background would write over somebody else's lines.
    [[nodiscard]] static bool inForeground();

    /// Puts the text into the line, instead of what is there. Text that is empty clears it. Never waits: false when the
    /// terminal does not take it now, because somebody has stopped it. The line is then the old one or a part of the
    /// new one.
    [[nodiscard]] static bool show(std::string_view text);
};

}  // namespace jstore
