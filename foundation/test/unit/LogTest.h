#pragma once

#include <gtest/gtest.h>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <string>
#include <vector>

#include "foundation/log/basic_diagnostic_logger.h"

namespace foundation::log {

using Logger = basic_diagnostic_logger<char>;

/// What a sink receives of one record.
struct Record {
    std::string channel;
    Severity severity;
    unsigned indent;
    std::string text;
};

class CapturingBackend : public boost::log::sinks::basic_sink_backend<boost::log::sinks::synchronized_feeding> {
public:
    void consume(const boost::log::record_view& record) {
        records.push_back(
            {*boost::log::extract<std::string>("Channel", record), *boost::log::extract<Severity>("Severity", record),
             *boost::log::extract<unsigned>("Indent", record), *boost::log::extract<std::string>("Message", record)});
    }

    std::vector<Record> records;
};

/// A test with a sink that keeps the records of all channels.
class LogTest : public testing::Test {
protected:
    LogTest() : m_sink(boost::make_shared<Sink>(boost::make_shared<CapturingBackend>())) {
        boost::log::core::get()->add_sink(m_sink);
    }

    ~LogTest() override {
        boost::log::core::get()->remove_sink(m_sink);
        boost::log::core::get()->set_logging_enabled(true);
    }

    std::vector<Record> records() { return m_sink->locked_backend()->records; }

    // A channel's mask lives as long as the process, so each test has a channel of its own.
    const std::string m_channel = testing::UnitTest::GetInstance()->current_test_info()->name();

private:
    using Sink = boost::log::sinks::synchronous_sink<CapturingBackend>;
    boost::shared_ptr<Sink> m_sink;
};

}  // namespace foundation::log
