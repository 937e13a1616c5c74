#pragma once

#include <boost/log/sources/severity_channel_logger.hpp>

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

#include "foundation/log/Severity.h"
#include "foundation/log/SeverityMask.h"
#include "foundation/log/indent_attribute.h"
#include "foundation/log/record_writer.h"

namespace foundation::log {

/// A named source of diagnostic records over Boost.Log.
///
/// Records carry the attributes "Channel" (std::string), "Severity" (Severity) and "Indent" (unsigned). All loggers of
/// one name share one severity mask, which the host sets with setSeverityMask(); the host also adds the sinks.
/// Safe to use from any thread: the logger's own lock serialises the opening of records. Write with FOUNDATION_LOG.
///
/// Logging changes no result: what a filter, a sink, or the writing of a value throws ends there. The record, or the
/// value in it, is then lost. A host that wants to know sets an exception handler on the Boost.Log core or on the sink;
/// what that handler throws goes no further either.
template <class Char>
class basic_diagnostic_logger {
public:
    using char_type = Char;

    explicit basic_diagnostic_logger(const std::string& channel)
        : m_mask(detail::maskOf(channel)), m_source(boost::log::keywords::channel = channel) {
        m_source.add_attribute("Indent", m_indent);
    }

    basic_diagnostic_logger(const basic_diagnostic_logger&) = delete;
    basic_diagnostic_logger& operator=(const basic_diagnostic_logger&) = delete;

    /// Whether the channel's mask has the severity's bit. Costs one load.
    [[nodiscard]] bool accepts(Severity severity) const noexcept {
        // Relaxed: the mask orders nothing else; a record more or less around a change of the mask is harmless.
        return (m_mask.load(std::memory_order_relaxed) & static_cast<std::uint32_t>(severity)) != 0;
    }

    /// Opens a record; empty when the mask, the logging core or every sink refuses it, or when a filter throws.
    [[nodiscard]] boost::log::record open_record(Severity severity) noexcept {
        if (!accepts(severity)) {
            return {};
        }
        try {
            return m_source.open_record(boost::log::keywords::severity = severity);
        } catch (...) {
            return {};  // a record less, and the caller's work goes on
        }
    }

    /// Hands a finished record to the sinks. What a sink throws is dropped.
    void push_record(boost::log::record&& record) noexcept {
        try {
            m_source.push_record(std::move(record));
        } catch (...) {
            // The host's exception handler has had it, if there is one; the caller could do nothing about it.
        }
    }

    /// The indentation that traced functions change in balanced pairs.
    [[nodiscard]] detail::indent_attribute& indent() noexcept { return m_indent; }

private:
    const std::atomic<std::uint32_t>& m_mask;
    detail::indent_attribute m_indent;
    boost::log::sources::severity_channel_logger_mt<Severity, std::string> m_source;
};

}  // namespace foundation::log

/// Writes one record: `FOUNDATION_LOG(logger, Severity::Progress) << "Loaded " << name;`
///
/// Nothing after the macro is evaluated when the record is refused. Only what is thrown while the values are computed,
/// before they are written, reaches the caller, and then there is no record.
#define FOUNDATION_LOG(logger, severity) \
    FOUNDATION_LOG_WITH(BOOST_LOG_UNIQUE_IDENTIFIER_NAME(foundation_log_writer_), logger, severity)
#define FOUNDATION_LOG_WITH(writer, logger, severity)                                                            \
    for (::foundation::log::detail::record_writer writer((logger), (severity)); writer.is_open(); writer.push()) \
    writer
