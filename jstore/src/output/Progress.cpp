#include "output/Progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

#include "base/Format.h"
#include "base/Text.h"
#include "fl/i18n/text.h"
#include "output/Terminal.h"
#include "process/NoSignals.h"

namespace jstore {

namespace {

constexpr std::chrono::milliseconds Delay{500};
constexpr std::chrono::milliseconds Interval{100};

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

void Progress::count(const char* unit) {
    const std::lock_guard lock(m_mutex);
    m_state.unit = unit;
}

void Progress::begin(const char* unit, bool single) {
    count(unit);
    if (!m_enabled) {
        return;
    }
    const std::lock_guard lock(m_mutex);
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
        // The command does its work without a progress line.
    }
}

void Progress::at(const Location& location) {
    if (m_enabled) {
        atFile(location, std::nullopt);
    }
}

void Progress::atFile(const Location& file, std::optional<std::uint64_t> size) {
    std::string name = m_enabled ? printableName(fl::i18n::to_string(file.iri().getName())) : std::string();
    const std::lock_guard lock(m_mutex);
    m_state.name = std::move(name);
    m_fileSize = size;
    m_fileBytes = 0;
}

void Progress::advance(std::uint64_t bytes) {
    const std::lock_guard lock(m_mutex);
    m_state.bytes += bytes;
    m_fileBytes += bytes;
}

void Progress::countItem() {
    const std::lock_guard lock(m_mutex);
    ++m_state.items;
    m_countedBytes += m_fileBytes;
}

std::string Progress::counted() const {
    const std::lock_guard lock(m_mutex);
    if (m_state.unit.empty()) {
        return {};
    }
    const std::string bytes = m_countedBytes == 0 ? std::string() : ", " + sizeText(m_countedBytes, /*human=*/true);
    return fmt::format("{} {}{}", m_state.items, m_state.unit, bytes);
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
    ProgressView view = m_state;
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
    const std::size_t columns = Terminal::columns();
    // The last column stays free: some terminals begin a new line as soon as it is taken.
    const std::string line = columns > 1 ? progressLine(view(), columns - 1) : std::string();
    if (Terminal::show(line)) {
        m_visible = !line.empty();
    }
}

void Progress::clear() {
    if (m_visible) {
        m_visible = !Terminal::show({});
    }
}

}  // namespace jstore
