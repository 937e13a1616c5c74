#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "base/Location.h"
#include "output/ProgressLine.h"
#include "output/RateEstimator.h"

namespace jstore {

/// A line on a terminal that tells how far a long command is.
///
/// The main thread says what happens; a thread of this object's own, which never enters Java, draws: first when a
/// command has taken half a second, then ten times a second, also while an operation blocks. Where nothing can be
/// drawn there is no such thread. Drawing never waits for the terminal: what one that was stopped cannot take is left
/// out. Else the line is gone after pause() and after the destructor.
class Progress {
public:
    /// Draws only if that is wanted and the terminal allows it.
    explicit Progress(bool wanted);
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Something that may take long begins. Items are counted under the name `unit`; `single` means that the one file
    /// that comes is everything, so that its size is the total.
    void begin(const char* unit, bool single = false);
    /// The same for what is never drawn: the items are only counted.
    void count(const char* unit);

    /// What is being worked on.
    void at(const Location& location);
    /// The same for a file whose bytes are reported by advance(); its size, if it is known.
    void atFile(const Location& file, std::optional<std::uint64_t> size);
    void advance(std::uint64_t bytes);
    /// An item is done, with the bytes reported since atFile().
    void countItem();
    /// What was done so far: "12 copied, 1.5M"; empty for a command that counts nothing. Not only where lines are
    /// drawn.
    [[nodiscard]] std::string counted() const;
    /// Everything is done but the end of the back end.
    void finishing();

    /// Clears the line and keeps it away for as long as the lock lives, so that others may write to the terminal.
    [[nodiscard]] std::unique_lock<std::mutex> pause();

private:
    using Clock = std::chrono::steady_clock;

    void startDrawing();
    void drawUntilEnd();
    void draw();
    void clear();
    [[nodiscard]] ProgressView view() const;

    const bool m_enabled;
    mutable std::mutex m_mutex;  ///< guards everything below
    std::condition_variable m_changed;
    std::thread m_drawer;
    bool m_ended = false;
    bool m_visible = false;
    bool m_single = false;
    Clock::time_point m_start;
    RateEstimator m_rate{Clock::time_point()};
    ProgressView m_state;
    std::optional<std::uint64_t> m_fileSize;
    std::uint64_t m_fileBytes = 0;
    std::uint64_t m_countedBytes = 0;  ///< of the items that are done
};

}  // namespace jstore
