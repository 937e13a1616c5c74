#pragma once

namespace jstore {

/// A file descriptor that can be polled for whether something was signalled. Closed with the object.
class EventFile {
public:
    /// Throws std::system_error when the process has no file descriptor left.
    EventFile();
    ~EventFile();

    EventFile(const EventFile&) = delete;
    EventFile& operator=(const EventFile&) = delete;

    [[nodiscard]] int descriptor() const noexcept { return m_descriptor; }

    /// Makes the descriptor readable until clear() is called. For any thread, and for signal handlers.
    void signal() const noexcept;
    void clear() const noexcept;

private:
    int m_descriptor;
};

}  // namespace jstore
