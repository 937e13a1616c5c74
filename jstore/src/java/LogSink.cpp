#include "java/LogSink.h"

#include <boost/core/null_deleter.hpp>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core.hpp>
#include <boost/log/expressions/message.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_ostream_backend.hpp>
#include <boost/log/utility/exception_handler.hpp>
#include <boost/log/utility/formatting_ostream.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <iostream>
#include <string>

#include "base/Text.h"
#include "foundation/log/Severity.h"
#include "foundation/log/SeverityMask.h"

namespace jstore {

namespace log = boost::log;
using foundation::log::Severity;

namespace {

constexpr const char* Channel = "storage::javaprovider";

constexpr std::uint32_t bit(Severity severity) { return static_cast<std::uint32_t>(severity); }

std::uint32_t maskOf(LogLevel level) {
    constexpr std::uint32_t failures = bit(Severity::Failure) | bit(Severity::Caught);
    switch (level) {
        case LogLevel::Failures:
            return failures;
        case LogLevel::Progress:
            return failures | bit(Severity::Progress);
        case LogLevel::Trace:
            return foundation::log::AllSeverities;
        case LogLevel::Off:
            break;
    }
    return 0;
}

const char* markOf(Severity severity) {
    switch (severity) {
        case Severity::Failure:
        case Severity::Caught:
            return "! ";
        case Severity::Enter:
            return "> ";
        case Severity::Exit:
            return "< ";
        default:
            return "  ";
    }
}

void format(const log::record_view& record, log::formatting_ostream& out) {
    const auto severity = log::extract_or_default<Severity>("Severity", record, Severity::Progress);
    const auto depth = log::extract_or_default<unsigned>("Indent", record, 0U);
    const auto text = log::extract_or_default<std::string>("Message", record, std::string());
    out << "jstore log: " << markOf(severity) << std::string(std::size_t{2} * depth, ' ') << oneLine(text);
}

}  // namespace

void startLog(LogLevel level) {
    if (level == LogLevel::Off) {
        return;
    }
    auto backend = boost::make_shared<log::sinks::text_ostream_backend>();
    backend->add_stream(boost::shared_ptr<std::ostream>(&std::cerr, boost::null_deleter()));
    backend->auto_flush();
    auto sink = boost::make_shared<log::sinks::synchronous_sink<log::sinks::text_ostream_backend>>(backend);
    sink->set_filter([](const log::attribute_value_set& values) {
        return log::extract_or_default<std::string>("Channel", values, std::string()) == Channel;
    });
    sink->set_formatter(&format);
    log::core::get()->add_sink(sink);
    // A record that cannot be written is lost; it never ends the operation that it is about.
    log::core::get()->set_exception_handler(log::make_exception_suppressor());
    foundation::log::setSeverityMask(Channel, maskOf(level));
}

}  // namespace jstore
