#include "progress/Progress.h"

#include <algorithm>
#include <csignal>
#include <system_error>

#include "Text.h"
#include "fl/i18n/text.h"
#include "progress/Terminal.h"

namespace jstore {

namespace {

constexpr std::chrono::milliseconds Delay{500};
constexpr std::chrono::milliseconds Interval{100};

/// Keeps signals away from threads that are started in the scope, so that they reach the main thread.
class NoSignals {
public:
    NoSignals() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~NoSignals() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    NoSignals(const NoSignals&) = delete;
    NoSignals& operator=(const NoSignals&) = delete;

private:
    sigset_t m_before{};
};

}  // namespace

Progress::Progress(bool wanted) : m_enabled(wanted && Terminal::canDraw()) {}

Progress::~Progress() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        clear();
    }
    m_changed.notify_all();
    if (m_drawer.joinable()) {
        m_drawer.join();
    }
}

void Progress::begin(const char* unit, bool single) {
    if (!m_enabled) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_state.unit = unit;
    m_single = single;
    if (!m_drawer.joinable()) {
        startDrawing();
    }
}

void Progress::startDrawing() {
    m_start = Clock::now();
    m_rate = RateEstimator(m_start);
    const NoSignals scope;
    try {
        m_drawer = std::thread([this] { drawUntilEnd(); });
    } catch (const std::system_error&) {
        // A command that can do its work without a line does it.
    }
}

void Progress::at(const Location& location) {
    if (m_enabled) {
        atFile(location, std::nullopt);
    }
}

void Progress::atFile(const Location& file, std::optional<std::uint64_t> size) {
    if (!m_enabled) {
        return;
    }
    auto name = printableName(fl::i18n::to_string(file.iri().getName()));
    const std::lock_guard lock(m_mutex);
    m_state.name = std::move(name);
    m_fileSize = size;
    m_fileBytes = 0;
}

void Progress::advance(std::uint64_t bytes) {
    if (!m_enabled) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_state.bytes += bytes;
    m_fileBytes += bytes;
}

void Progress::countItem() {
    if (!m_enabled) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    ++m_state.items;
}

void Progress::finishing() {
    if (!m_enabled) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_state.name = "finishing";
    m_single = false;
    m_fileSize.reset();
}

std::unique_lock<std::mutex> Progress::pause() {
    std::unique_lock lock(m_mutex);
    clear();
    return lock;
}

void Progress::drawUntilEnd() {
    ::pthread_setname_np(::pthread_self(), "progress");
    std::unique_lock lock(m_mutex);
    const auto ended = [this] { return m_ended; };
    m_changed.wait_for(lock, Delay, ended);
    while (!m_ended) {
        draw();
        m_changed.wait_for(lock, Interval, ended);
    }
}

ProgressView Progress::view() const {
    auto view = m_state;
    const bool sized = m_fileSize && *m_fileSize > 0;
    if (sized && m_single) {
        view.totalBytes = m_fileSize;
        view.left = m_rate.timeLeft(*m_fileSize);
    } else if (sized) {
        view.namePercent = static_cast<int>(std::min<std::uint64_t>(m_fileBytes * 100 / *m_fileSize, 100));
    }
    view.rate = m_rate.rate();
    view.elapsed = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - m_start);
    return view;
}

void Progress::draw() {
    m_rate.update(Clock::now(), m_state.bytes);
    if (!Terminal::inForeground()) {
        return;
    }
    const auto columns = Terminal::columns();
    // The last column stays free: some terminals begin a new line as soon as it is taken.
    const auto line = columns > 1 ? progressLine(view(), columns - 1) : std::string();
    Terminal::show(line);
    m_visible = !line.empty();
}

void Progress::clear() {
    if (m_visible) {
        Terminal::show({});
        m_visible = false;
    }
}

}  // namespace jstore
