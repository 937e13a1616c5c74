#include "watch/Watching.h"

#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "base/Format.h"
#include "base/Problem.h"
#include "base/Text.h"
#include "foundation/storage/provider/Exception.h"
#include "process/Interrupt.h"
#include "work/Entry.h"
#include "work/ReportFailure.h"

namespace jstore {

using namespace foundation::storage::provider;
using foundation::storage::events::Kind;
using std::chrono::milliseconds;

namespace {

/// Receives events on the back end's threads. Owns its share of the queue, since a back end may report later events.
class Receiver {
public:
    explicit Receiver(std::shared_ptr<EventQueue> queue) : m_queue(std::move(queue)) {}

    void operator()(const Kind& kind, const StorageIRI& watched, const StorageIRI& changed, const EntryType& type,
                    const boost::property_tree::ptree& details) const noexcept {
        try {
            m_queue->push({kind, watched, changed, type, details.get("originId", std::string()),
                           boost::posix_time::microsec_clock::universal_time()});
        } catch (const std::exception&) {
            m_queue->lose();  // no memory; nothing may be thrown into Java
        }
    }

private:
    std::shared_ptr<EventQueue> m_queue;
};

}  // namespace

Watching::Watching(Context& context, const std::vector<Location>& locations, WatchOptions options)
    : m_context(&context), m_options(std::move(options)) {
    for (const Location& location : locations) {
        m_index.add(location.iri(), m_places.size());
        m_places.emplace_back(location);
    }
    m_watched = m_places.size();
    if (m_options.command) {
        const bool json = context.reporter().json();
        m_command.emplace(*m_options.command,
                          json ? Command::Output::ToStandardError : Command::Output::ToStandardOutput);
    }
}

Watching::~Watching() { m_queue->close(); }

ExitCode Watching::run() {
    m_context->progress().count("events");
    startAll();
    watch();
    if (interrupted()) {
        return interruptionCode();
    }
    stopAll();
    return outcome();
}

void Watching::startAll() {
    for (Place& place : m_places) {
        if (!interrupted()) {
            start(place);
        }
    }
}

void Watching::start(Place& place) {
    try {
        begin(place.location());
    } catch (...) {
        end(place, reportFailure(*m_context, place.location()));
        return;
    }
    m_context->reporter().note("watching " + printable(place.location().text()));
    m_context->reporter().done(place.location(), {{"event", "Watching"}});
}

void Watching::begin(const Location& location) const {
    const IProvider& provider = m_context->provider();
    if (m_options.recursive && !m_context->hasFeature(ExtendedFeature::RecursiveChangeEvents)) {
        throw refusal(location, ErrorCode::NotSupported,
                      "the back end reports only the direct children of a folder; leave out -r");
    }
    try {
        provider.startChangeNotification(location.iri(), Receiver(m_queue));
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotSupported) {
            throw;
        }
        throw refusal(location, ErrorCode::NotSupported, "the back end does not report changes");
    }
}

/// Events that still arrive do no harm, but the author of the back end needs to see that stopping failed.
void Watching::stopAll() {
    for (Place& place : m_places) {
        if (place.code != ExitCode::Done) {
            continue;
        }
        try {
            m_context->provider().stopChangeNotification(place.location().iri());
        } catch (...) {
            end(place, reportFailure(*m_context, place.location()));
        }
    }
}

void Watching::watch() {
    const std::optional<Clock::time_point> end =
        m_options.duration ? std::optional(Clock::now() + *m_options.duration) : std::nullopt;
    while (!isOver()) {
        const bool late = end && Clock::now() >= *end;
        showAll(m_queue->take());
        if (late) {
            return;
        }
        if (!isOver()) {
            awaitSomething(end);
        }
    }
}

/// Returns when there are events, a signal that stops jstore has arrived, or the end has come. Throws when nobody reads
/// the output any more: a watch without events would otherwise never notice.
void Watching::awaitSomething(const std::optional<Clock::time_point>& end) const {
    std::array<pollfd, 3> sources{
        {{m_queue->descriptor(), POLLIN, 0}, {interruptDescriptor(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    constexpr milliseconds longest = std::chrono::hours(1);
    // Rounded up: otherwise the last millisecond would be a busy loop.
    const std::chrono::milliseconds left = end ? std::chrono::ceil<milliseconds>(*end - Clock::now()) : longest;
    ::poll(sources.data(), sources.size(), static_cast<int>(std::clamp(left, milliseconds(0), longest).count()));
    // Nobody reads the output any more: POLLERR for a pipe, POLLHUP for a socket or a terminal. Both are reported
    // without a request, and stay.
    if (sources[2].revents != 0) {
        throw OutputError(EPIPE);
    }
}

bool Watching::isOver() const {
    return interrupted() || (m_options.count && m_shown >= *m_options.count) || m_watched == 0;
}

void Watching::showAll(const EventQueue::Batch& batch) {
    for (const Event& event : batch.events) {
        if (isOver()) {
            return;
        }
        show(event);
    }
    if (batch.lost != 0) {
        reportLoss(batch.lost);
    }
}

Watching::Place* Watching::placeOf(const StorageIRI& watched) {
    const std::optional<std::size_t> number = m_index.find(watched);
    return number ? &m_places[*number] : nullptr;
}

void Watching::show(const Event& event) {
    Place* const place = placeOf(event.watched);
    // The bridge passes on every event, even for places that nobody watches.
    if (place != nullptr && place->code == ExitCode::Done) {
        show(event, *place);
    }
}

void Watching::show(const Event& event, Place& place) {
    const std::optional<WatchedPlace::Below> found = place.find(event.changed);
    if (found && found->depth > 1 && !m_options.recursive) {
        return;
    }
    const Location changed = found ? found->location : Location(event.changed);
    ++m_shown;
    m_context->progress().countItem();
    print(event, changed, place.location());
    if (m_command) {
        runCommand(event, changed, place.location());
    }
    const bool enough = m_options.count && m_shown >= *m_options.count;
    if (event.kind == Kind::SelfRemoved && !enough) {
        reportRemoval(place);
    }
}

void Watching::print(const Event& event, const Location& changed, const Location& watched) {
    const std::string time = timeText(event.time);
    m_context->reporter().line(fmt::format("{}{:<13}  {:<6}  {}", m_options.times ? time + "  " : "",
                                           wordFor(event.kind), wordFor(event.type), printable(changed.text())));
    Reporter::Fields fields = {{"event", wordFor(event.kind)}, {"type", wordFor(event.type)}};
    fields["watched"] = watched.text();
    fields["time"] = time;
    if (!event.originId.empty()) {
        fields["originId"] = event.originId;
    }
    m_context->reporter().done(changed, fields);
}

void Watching::runCommand(const Event& event, const Location& changed, const Location& watched) {
    const std::string problem = m_command->run({{"JSTORE_EVENT", wordFor(event.kind)},
                                                {"JSTORE_TYPE", wordFor(event.type)},
                                                {"JSTORE_LOCATION", changed.text()},
                                                {"JSTORE_WATCHED", watched.text()},
                                                {"JSTORE_TIME", timeText(event.time)},
                                                {"JSTORE_ORIGIN", event.originId}});
    if (!problem.empty()) {
        m_failed = true;
        m_context->reporter().failed(changed, {"Command", changed.text(), "the command " + problem, ExitCode::Failed});
    }
}

/// The place is not watched, or not any more.
void Watching::end(Place& place, ExitCode code) {
    place.code = code;
    --m_watched;
}

void Watching::reportRemoval(Place& place) {
    end(place, ExitCode::NotFound);
    m_context->reporter().failed(place.location(), {std::string(toString(ErrorCode::NotFound)), place.location().text(),
                                                    "it was removed and is no longer watched", place.code});
}

void Watching::reportLoss(std::uint64_t lost) {
    m_failed = true;
    m_context->reporter().failed({"Lost", {}, fmt::format("{} events were lost because they came too fast", lost)});
}

ExitCode Watching::outcome() const {
    std::vector<ExitCode> codes;
    for (const Place& place : m_places) {
        codes.push_back(place.code);
    }
    const ExitCode code = combine(codes);
    return code == ExitCode::Done && m_failed ? ExitCode::Failed : code;
}

}  // namespace jstore
