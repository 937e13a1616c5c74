// What fails while a record is written: a value, a sink, a filter.
#include <ostream>
#include <stdexcept>

#include "LogTest.h"

namespace foundation::log {
namespace {

/// Cannot be written.
struct Unwritable {};

std::ostream& operator<<(std::ostream& out, const Unwritable&) {
    out << "half of";
    throw std::out_of_range("no text for this value");
}

/// A sink that fails at every record.
struct FailingBackend : boost::log::sinks::basic_sink_backend<boost::log::sinks::synchronized_feeding> {
    void consume(const boost::log::record_view&) { throw std::runtime_error("the disk is full"); }
};

class LogFailureTest : public LogTest {};

TEST_F(LogFailureTest, ValueThatCannotBeWrittenCostsOnlyItself) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    EXPECT_NO_THROW(FOUNDATION_LOG(logger, Severity::Failure) << "a " << Unwritable() << " b");
    FOUNDATION_LOG(logger, Severity::Failure) << "next";
    const auto written = records();
    ASSERT_EQ(written.size(), 2U);
    EXPECT_EQ(written[0].text, "a half of b");
    EXPECT_EQ(written[1].text, "next");
}

TEST_F(LogFailureTest, SinkThatThrowsIsNoConcernOfTheCaller) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    const auto failing = boost::make_shared<boost::log::sinks::synchronous_sink<FailingBackend>>();
    boost::log::core::get()->add_sink(failing);
    EXPECT_NO_THROW(FOUNDATION_LOG(logger, Severity::Failure) << "text");
    boost::log::core::get()->remove_sink(failing);
    FOUNDATION_LOG(logger, Severity::Failure) << "after";
    EXPECT_EQ(records().back().text, "after");
}

TEST_F(LogFailureTest, HandlerOfTheHostHearsOfASinkThatThrows) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    const auto failing = boost::make_shared<boost::log::sinks::synchronous_sink<FailingBackend>>();
    boost::log::core::get()->add_sink(failing);
    int heard = 0;
    boost::log::core::get()->set_exception_handler([&heard] { ++heard; });
    FOUNDATION_LOG(logger, Severity::Failure) << "text";
    boost::log::core::get()->set_exception_handler({});
    boost::log::core::get()->remove_sink(failing);
    EXPECT_EQ(heard, 1);
}

TEST_F(LogFailureTest, FilterThatThrowsIsNoConcernOfTheCaller) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    boost::log::core::get()->set_filter(
        [](const boost::log::attribute_value_set&) -> bool { throw std::runtime_error("filter"); });
    EXPECT_NO_THROW(FOUNDATION_LOG(logger, Severity::Failure) << "text");
    boost::log::core::get()->reset_filter();
    EXPECT_TRUE(records().empty());
}

TEST_F(LogFailureTest, WhatThrowsBeforeItIsWrittenLeavesNoRecord) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    const auto value = []() -> int { throw std::out_of_range("not the log's"); };
    EXPECT_THROW(FOUNDATION_LOG(logger, Severity::Failure) << "text " << value(), std::out_of_range);
    EXPECT_TRUE(records().empty());
}

}  // namespace
}  // namespace foundation::log
