#pragma once

#include "process/Descriptor.h"

namespace jstore {

/// A file descriptor that can be polled for whether something was signalled. Closed with the object.
class EventFile {
public:
    /// Throws std::system_error when the process has no file descriptor left.
    EventFile();

    [[nodiscard]] int descriptor() const noexcept { return m_descriptor.get(); }

    /// Makes the descriptor readable until clear() is called. For any thread, and for signal handlers.
    void signal() const noexcept;
    void clear() const noexcept;

private:
    Descriptor m_descriptor;
};

}  // namespace jstore
