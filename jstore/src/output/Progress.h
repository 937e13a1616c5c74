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

/// A line on a terminal that shows the progress of a long command.
///
/// The main thread reports what happens. A thread of this object, which never enters Java, draws: first after half a
/// second, then ten times a second, even while an operation blocks. Where nothing can be drawn there is no such thread.
/// Drawing never waits for the terminal: a stopped one may miss an update, or keep the line. Otherwise the line is gone
/// after pause() and after the destructor.
class Progress {
public:
    /// Draws only if that is wanted and the terminal allows it.
    explicit Progress(bool wanted);
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Starts to show the progress of something that may take long. Items are counted under the name `unit`. `single`
    /// means that only one file follows, so that its size is the total.
    void begin(const char* unit, bool single = false);
    /// Only counts the items and draws nothing.
    void count(const char* unit);

    /// What is being worked on.
    void at(const Location& location);
    /// The same for a file whose bytes are reported by advance(); its size, if it is known.
    void atFile(const Location& file, std::optional<std::uint64_t> size);
    void advance(std::uint64_t bytes);
    /// An item is done, with the bytes reported since atFile().
    void countItem();
    /// What was done so far: "12 copied, 1.5M". Empty for a command that counts nothing. Holds even where nothing is
    /// drawn.
    [[nodiscard]] std::string counted() const;
    /// Only the end of the back end is left to do.
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
