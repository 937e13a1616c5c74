#include <gmock/gmock.h>

#include <boost/log/attributes/value_extraction.hpp>

#include <atomic>
#include <ostream>
#include <stdexcept>

#include "BridgeTest.h"
#include "JNIUtilsLog.h"
#include "RecordHook.h"
#include "TraceRecords.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {

namespace {

using foundation::log::setSeverityMask;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr TraceSite Site{"void traced(int)", "some/source/file", 321};

/// A test of the scope by itself; it needs no Java.
class TraceScopeTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(depth(), 0U) << "the indentation did not come back"; }
};

TEST_F(TraceScopeTest, NormalReturnWritesTheSignatureTwice) {
    const LogCapture log;
    { const TraceScope scope(Site); }
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Enter, "void traced(int)", 0},
                                           LogRecord{Severity::Exit, "void traced(int)", 0}));
}

TEST_F(TraceScopeTest, SeveritiesAreTheBitsThatHostsSet) {
    EXPECT_EQ(static_cast<std::uint32_t>(Severity::Arguments), 2U);
    EXPECT_EQ(static_cast<std::uint32_t>(Severity::Progress), 4U);
    EXPECT_EQ(static_cast<std::uint32_t>(Severity::Caught), 16U);
    EXPECT_EQ(static_cast<std::uint32_t>(Severity::Enter), Enter);
    EXPECT_EQ(static_cast<std::uint32_t>(Severity::Exit), Exit);
    EXPECT_EQ(static_cast<std::uint32_t>(Severity::Failure), 512U);
}

TEST_F(TraceScopeTest, FunctionLeftByAnExceptionSaysSo) {
    const LogCapture log;
    const auto failing = [] {
        const TraceScope scope(Site);
        throw std::logic_error("from inside");
    };
    EXPECT_THROW(failing(), std::logic_error);
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Enter, "void traced(int)", 0},
                                           LogRecord{Severity::Exit, "void traced(int) [throw]", 0}));
}

/// Runs a traced scope while it is destroyed.
struct TracedDestructor {
    ~TracedDestructor() { const TraceScope scope(Site); }
};

TEST_F(TraceScopeTest, NormalReturnDuringAnUnwindingIsANormalReturn) {
    const LogCapture log(Exit | Enter);
    const auto failing = [] {
        const TracedDestructor runsWhileUnwinding;
        throw std::logic_error("from inside");
    };
    EXPECT_THROW(failing(), std::logic_error);
    EXPECT_THAT(log.texts(), ElementsAre("void traced(int)", "void traced(int)"));
}

TEST_F(TraceScopeTest, ExceptionCaughtInsideIsANormalReturn) {
    const LogCapture log(Exit | Enter);
    {
        const TraceScope scope(Site);
        EXPECT_THROW(throw std::logic_error("caught inside"), std::logic_error);
    }
    EXPECT_THAT(log.texts(), ElementsAre("void traced(int)", "void traced(int)"));
}

TEST_F(TraceScopeTest, WhatIsInsideIsIndentedByOne) {
    const LogCapture log;
    {
        const TraceScope outer(Site);
        EXPECT_EQ(depth(), 1U);
        const TraceScope inner(TraceSite{"inner", "file", 1});
        EXPECT_EQ(depth(), 2U);
        FOUNDATION_LOG(logger(), Severity::Progress) << "inside";
    }
    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{Severity::Enter, "void traced(int)", 0}, LogRecord{Severity::Enter, "inner", 1},
                            LogRecord{Severity::Progress, "inside", 2}, LogRecord{Severity::Exit, "inner", 1},
                            LogRecord{Severity::Exit, "void traced(int)", 0}));
}

TEST_F(TraceScopeTest, EntryAloneWritesNoExitAndStillIndents) {
    const LogCapture log(Enter);
    {
        const TraceScope scope(Site);
        EXPECT_EQ(depth(), 1U);
    }
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Enter, "void traced(int)", 0}));
}

TEST_F(TraceScopeTest, ExitWithoutEntryWritesNothingAndDoesNotIndent) {
    const LogCapture log(~Enter);
    {
        const TraceScope scope(Site);
        EXPECT_EQ(depth(), 0U);
    }
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TraceScopeTest, SwitchedOnInsideItStaysSilent) {
    const LogCapture log(0);
    {
        const TraceScope scope(Site);
        setSeverityMask(ChannelName, foundation::log::AllSeverities);
    }
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TraceScopeTest, EntrySwitchedOffInsideItStillEndsTheIndentationAndTellsTheExit) {
    const LogCapture log;
    {
        const TraceScope scope(Site);
        setSeverityMask(ChannelName, Exit);
    }
    EXPECT_EQ(depth(), 0U);
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Enter, "void traced(int)", 0},
                                           LogRecord{Severity::Exit, "void traced(int)", 0}));
}

TEST_F(TraceScopeTest, AllSwitchedOffInsideItStillEndsTheIndentation) {
    const LogCapture log;
    {
        const TraceScope scope(Site);
        setSeverityMask(ChannelName, 0);
    }
    EXPECT_EQ(depth(), 0U);
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Enter, "void traced(int)", 0}));
}

TEST_F(TraceScopeTest, RecordsCarryFileAndLine) {
    std::vector<std::pair<std::string, std::uint32_t>> places;
    const LogCapture log;
    const RecordHook hook([&](const boost::log::record_view& record) {
        places.emplace_back(boost::log::extract_or_default<std::string>("File", record, std::string()),
                            boost::log::extract_or_default<std::uint32_t>("Line", record, 0U));
    });
    { const TraceScope scope(Site); }
    const std::pair<std::string, std::uint32_t> place("some/source/file", 321U);
    EXPECT_THAT(places, ElementsAre(place, place));
}

/// What a sink does that fails at the records of exits.
void failAtExit(const boost::log::record_view& record, bool& failed) {
    if (boost::log::extract_or_default<Severity>("Severity", record, Severity{}) == Severity::Exit) {
        failed = true;
        throw std::runtime_error("the disk is full");
    }
}

TEST_F(TraceScopeTest, SinkThatFailsAtTheExitCostsThatRecordOnly) {
    bool failed = false;
    const LogCapture log(Enter | Exit);
    const RecordHook hook([&](const boost::log::record_view& record) { failAtExit(record, failed); });
    const auto traced = [] { const TraceScope scope(Site); };
    EXPECT_NO_THROW(traced());
    EXPECT_TRUE(failed);
}

TEST_F(TraceScopeTest, SinkThatFailsWhileAnExceptionLeavesDoesNotEndTheProcess) {
    bool failed = false;
    const LogCapture log(Enter | Exit);
    const RecordHook hook([&](const boost::log::record_view& record) { failAtExit(record, failed); });
    const auto traced = [] {
        const TraceScope scope(Site);
        throw std::logic_error("from inside");
    };
    EXPECT_THROW(traced(), std::logic_error);
    EXPECT_TRUE(failed);
}

TEST_F(TraceScopeTest, SinkThatFailsAtTheEntryCostsThatRecordOnly) {
    const LogCapture log(Enter);
    const RecordHook hook([](const boost::log::record_view&) { throw std::runtime_error("the disk is full"); });
    unsigned inside = 0;
    const auto traced = [&] {
        const TraceScope scope(Site);
        inside = depth();
    };
    EXPECT_NO_THROW(traced());
    EXPECT_EQ(inside, 1U);
    EXPECT_EQ(depth(), 0U);
}

/// Counts how often it is written to a stream.
struct Counted {
    std::atomic<int>* insertions;
    friend std::ostream& operator<<(std::ostream& out, const Counted& counted) {
        ++*counted.insertions;
        return out;
    }
};

TEST_F(TraceScopeTest, RefusedRecordFormatsNothing) {
    std::atomic<int> insertions = 0;
    const LogCapture log(static_cast<std::uint32_t>(Severity::Failure));
    FOUNDATION_LOG(logger(), Severity::Progress) << Counted{&insertions};
    EXPECT_EQ(insertions, 0);
    FOUNDATION_LOG(logger(), Severity::Failure) << Counted{&insertions};
    EXPECT_EQ(insertions, 1);
}

}  // namespace

}  // namespace storage::javaprovider::test
