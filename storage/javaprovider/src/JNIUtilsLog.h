#pragma once

#include <cstdint>

#include "foundation/log/basic_diagnostic_logger.h"

namespace storage::javaprovider {

using foundation::log::Severity;
using DiagnosticLogger = foundation::log::basic_diagnostic_logger<char>;

/// The name of the library's one log channel.
inline constexpr const char* ChannelName = "storage::javaprovider";

namespace detail {
extern DiagnosticLogger libraryLogger;
}

/// The library's logger, made when the library is loaded. Safe from any thread.
[[nodiscard]] inline DiagnosticLogger& logger() noexcept { return detail::libraryLogger; }

/// Where a traced function stands.
struct TraceSite {
    const char* signature;  ///< the function's full signature
    const char* file;       ///< the source path, cut after the file's common stem
    std::uint32_t line;     ///< a number that hosts filter by; not always the line in the file
};

/// Writes a record when a function is entered and another when it is left; the latter ends in " [throw]" when an
/// exception leaves the function. Stands on the stack as the first thing of a traced function.
///
/// Whether it writes is decided once, at entry, so that the indentation always comes back to where it was. The records
/// carry the site's file and line as the attributes "File" and "Line".
class TraceScope {
public:
    explicit TraceScope(const TraceSite& site) noexcept : m_site(site), m_enabled(logger().accepts(Severity::Enter)) {
        if (m_enabled) {
            enter();
        }
    }
    ~TraceScope() {
        if (m_enabled) {
            leave();
        }
    }

    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

private:
    [[gnu::cold]] void enter() noexcept;
    [[gnu::cold]] void leave() const noexcept;
    void write(Severity severity, const char* suffix) const noexcept;
    void writeRecord(Severity severity, const char* suffix) const;

    TraceSite m_site;
    bool m_enabled;
    /// How many exceptions were under way at entry; counted only when the scope writes.
    std::int32_t m_uncaught = 0;
};

}  // namespace storage::javaprovider
