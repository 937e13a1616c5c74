#pragma once

#include <boost/log/sources/record_ostream.hpp>

#include <ios>
#include <optional>
#include <ostream>

#include "foundation/log/Severity.h"

namespace foundation::log::detail {

/// One record while FOUNDATION_LOG writes it. It throws nothing: a value that cannot be written is left out. It is a
/// local variable of one thread; the logger must outlive it.
template <class Logger>
class record_writer {
public:
    using char_type = typename Logger::char_type;

    /// Opens the record, unless it is refused.
    record_writer(Logger& logger, Severity severity) noexcept : m_record(logger.open_record(severity)) {
        if (m_record) {
            openText(logger);
        }
    }

    record_writer(const record_writer&) = delete;
    record_writer& operator=(const record_writer&) = delete;

    /// Drops the record unless push() was called.
    ~record_writer() = default;

    [[nodiscard]] bool is_open() const noexcept { return m_text.has_value(); }

    /// Passes the record to the sinks.
    void push() noexcept { m_text.reset(); }

    template <class Value>
    record_writer& operator<<(const Value& value) noexcept {
        return write(value);
    }
    record_writer& operator<<(std::basic_ostream<char_type>& (*manipulator)(std::basic_ostream<char_type>&)) noexcept {
        return write(manipulator);
    }
    record_writer& operator<<(std::ios_base& (*manipulator)(std::ios_base&)) noexcept { return write(manipulator); }

private:
    /// Pushes its record when it is destroyed, unless the stack is unwinding.
    using Text = boost::log::aux::record_pump<Logger>;

    void openText(Logger& logger) noexcept {
        try {
            m_text.emplace(logger, m_record);
        } catch (...) {
            m_text.reset();  // no memory for the text: the record is not written
        }
    }

    template <class Value>
    record_writer& write(const Value& value) noexcept {
        try {
            m_text->stream() << value;
        } catch (...) {
            // The values before and after it are still useful.
            m_text->stream().clear();
        }
        return *this;
    }

    boost::log::record m_record;
    std::optional<Text> m_text;
};

}  // namespace foundation::log::detail
