#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/ExitCode.h"
#include "process/Command.h"
#include "watch/EventQueue.h"
#include "watch/PlaceIndex.h"
#include "watch/WatchedPlace.h"
#include "work/Context.h"

namespace jstore {

/// The options of the watch verb.
struct WatchOptions {
    bool recursive = false;
    bool times = false;
    std::optional<std::chrono::milliseconds> duration;
    std::optional<std::uint64_t> count;
    std::optional<std::string> command;
};

/// Watches locations and shows what happens to them while run() runs. Used only by the main thread; the back end's own
/// threads only put events into a queue.
class Watching {
public:
    Watching(Context& context, const std::vector<Location>& locations, WatchOptions options);
    /// Events that still come from the back end are dropped.
    ~Watching();

    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;

    /// Watches until the duration is over, the count is reached, SIGINT, SIGTERM or SIGHUP arrives, or nothing is left
    /// to be watched. Throws OutputError as soon as nobody reads standard output any more, events or not.
    [[nodiscard]] ExitCode run();

private:
    using Clock = std::chrono::steady_clock;

    struct Place : WatchedPlace {
        using WatchedPlace::WatchedPlace;
        ExitCode code = ExitCode::Done;  ///< anything else: it is not watched, or not any more
    };

    void start(Place& place);
    void begin(const Location& location) const;
    void startAll();
    void stopAll();
    void watch();
    void awaitSomething(const std::optional<Clock::time_point>& end) const;
    void showAll(const EventQueue::Batch& batch);
    void show(const Event& event);
    void show(const Event& event, Place& place);
    void print(const Event& event, const Location& changed, const Location& watched);
    void runCommand(const Event& event, const Location& changed, const Location& watched);
    void end(Place& place, ExitCode code);
    void reportRemoval(Place& place);
    void reportLoss(std::uint64_t lost);
    [[nodiscard]] Place* placeOf(const foundation::storage::provider::StorageIRI& watched);
    [[nodiscard]] bool isOver() const;
    [[nodiscard]] ExitCode outcome() const;

    Context* m_context;
    WatchOptions m_options;
    std::vector<Place> m_places;
    PlaceIndex m_index;         ///< of the places, by their number in the list
    std::size_t m_watched = 0;  ///< how many of them have not ended
    std::optional<Command> m_command;
    std::shared_ptr<EventQueue> m_queue = std::make_shared<EventQueue>();
    std::uint64_t m_shown = 0;
    bool m_failed = false;  ///< a command failed, or events were lost
};

}  // namespace jstore
