#include "LogTest.h"

#include <array>
#include <atomic>
#include <chrono>
#include <map>
#include <ostream>
#include <thread>

namespace foundation::log {
namespace {

constexpr std::array Severities = {Severity::Arguments, Severity::Progress, Severity::Caught,
                                   Severity::Enter,     Severity::Exit,     Severity::Failure};

constexpr std::uint32_t bit(Severity severity) { return static_cast<std::uint32_t>(severity); }

/// Counts how often it is written.
struct Counted {
    mutable int writes = 0;
};

std::ostream& operator<<(std::ostream& out, const Counted& counted) {
    ++counted.writes;
    return out << "counted";
}

TEST_F(LogTest, SeveritiesHaveTheirBits) {
    EXPECT_EQ(bit(Severity::Arguments), 2U);
    EXPECT_EQ(bit(Severity::Progress), 4U);
    EXPECT_EQ(bit(Severity::Caught), 16U);
    EXPECT_EQ(bit(Severity::Enter), 32U);
    EXPECT_EQ(bit(Severity::Exit), 64U);
    EXPECT_EQ(bit(Severity::Failure), 512U);
}

TEST_F(LogTest, MaskLetsThroughTheSeveritiesOfItsBits) {
    Logger logger(m_channel);
    for (const Severity open : Severities) {
        setSeverityMask(m_channel, bit(open));
        for (const Severity severity : Severities) {
            EXPECT_EQ(logger.accepts(severity), severity == open);
            FOUNDATION_LOG(logger, severity) << bit(severity);
        }
    }
    const auto written = records();
    ASSERT_EQ(written.size(), Severities.size());
    for (std::size_t i = 0; i < written.size(); ++i) {
        EXPECT_EQ(written[i].severity, Severities[i]);
        EXPECT_EQ(written[i].text, std::to_string(bit(Severities[i])));
    }
}

TEST_F(LogTest, ChannelIsOffAtFirst) {
    EXPECT_EQ(severityMask(m_channel), 0U);
    Logger logger(m_channel);
    EXPECT_EQ(severityMask(m_channel), 0U);
    FOUNDATION_LOG(logger, Severity::Failure) << "text";
    EXPECT_TRUE(records().empty());
}

TEST_F(LogTest, NothingIsFormattedWhileTheMaskIsZero) {
    Logger logger(m_channel);
    const Counted counted;
    for (const Severity severity : Severities) {
        FOUNDATION_LOG(logger, severity) << counted;
    }
    EXPECT_EQ(counted.writes, 0);
    EXPECT_TRUE(records().empty());

    setSeverityMask(m_channel, AllSeverities);
    FOUNDATION_LOG(logger, Severity::Failure) << counted;
    EXPECT_EQ(counted.writes, 1);
}

TEST_F(LogTest, NothingIsFormattedWhileTheCoreIsDisabled) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    boost::log::core::get()->set_logging_enabled(false);
    const Counted counted;
    FOUNDATION_LOG(logger, Severity::Failure) << counted;
    EXPECT_EQ(counted.writes, 0);
    EXPECT_TRUE(records().empty());

    boost::log::core::get()->set_logging_enabled(true);
    FOUNDATION_LOG(logger, Severity::Failure) << counted;
    EXPECT_EQ(records().size(), 1U);
}

TEST_F(LogTest, TextIsWrittenExactly) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    FOUNDATION_LOG(logger, Severity::Progress) << "Asking ClassLoader (" << 7 << ") \xC3\xA4\n"
                                               << std::string("x") << ' ';
    const auto written = records();
    ASSERT_EQ(written.size(), 1U);
    EXPECT_EQ(written[0].text, "Asking ClassLoader (7) \xC3\xA4\nx ");
}

TEST_F(LogTest, RecordCarriesChannelSeverityAndIndent) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    FOUNDATION_LOG(logger, Severity::Enter) << "outside";
    logger.indent().increase();
    logger.indent().increase();
    FOUNDATION_LOG(logger, Severity::Arguments) << "inside";
    logger.indent().decrease();
    FOUNDATION_LOG(logger, Severity::Exit) << "between";
    logger.indent().decrease();
    const auto written = records();
    ASSERT_EQ(written.size(), 3U);
    EXPECT_EQ(written[1].channel, m_channel);
    EXPECT_EQ(written[1].severity, Severity::Arguments);
    EXPECT_EQ(written[0].indent, 0U);
    EXPECT_EQ(written[1].indent, 2U);
    EXPECT_EQ(written[2].indent, 1U);
}

TEST_F(LogTest, IndentNeverGoesBelowZero) {
    Logger logger(m_channel);
    logger.indent().decrease();
    EXPECT_EQ(logger.indent().depth(), 0U);
    logger.indent().increase();
    EXPECT_EQ(logger.indent().depth(), 1U);
    logger.indent().decrease();
    EXPECT_EQ(logger.indent().depth(), 0U);
}

TEST_F(LogTest, LoggersOfOneNameShareTheMask) {
    setSeverityMask(m_channel, bit(Severity::Caught));
    Logger first(m_channel);
    Logger second(m_channel);
    EXPECT_TRUE(first.accepts(Severity::Caught));
    EXPECT_TRUE(second.accepts(Severity::Caught));
    setSeverityMask(m_channel, bit(Severity::Exit));
    EXPECT_FALSE(first.accepts(Severity::Caught));
    EXPECT_TRUE(first.accepts(Severity::Exit));
    EXPECT_TRUE(second.accepts(Severity::Exit));
}

TEST_F(LogTest, LoggersOfOtherNamesDoNotShareIt) {
    Logger logger(m_channel);
    Logger other(m_channel + "::other");
    setSeverityMask(m_channel, AllSeverities);
    EXPECT_FALSE(other.accepts(Severity::Failure));
    EXPECT_EQ(severityMask(m_channel + "::other"), 0U);
}

TEST_F(LogTest, MaskOutlivesTheLogger) {
    { const Logger logger(m_channel); }
    setSeverityMask(m_channel, 6);
    { const Logger logger(m_channel); }
    EXPECT_EQ(severityMask(m_channel), 6U);
}

TEST_F(LogTest, ManipulatorsOfStreamsWork) {
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    FOUNDATION_LOG(logger, Severity::Failure) << std::hex << 255 << std::endl << std::dec << 255;
    ASSERT_EQ(records().size(), 1U);
    EXPECT_EQ(records()[0].text, "ff\n255");
}

TEST_F(LogTest, ThreadsWriteAtOnceEachWithItsOwnIndent) {
    constexpr unsigned Threads = 4;
    constexpr int Records = 500;
    Logger logger(m_channel);
    setSeverityMask(m_channel, AllSeverities);
    std::vector<std::thread> threads;
    for (unsigned depth = 0; depth < Threads; ++depth) {
        threads.emplace_back([&logger, depth] {
            for (unsigned i = 0; i < depth; ++i) {
                logger.indent().increase();
            }
            for (int i = 0; i < Records; ++i) {
                FOUNDATION_LOG(logger, Severity::Progress) << "depth " << depth;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::map<unsigned, int> counts;
    for (const Record& record : records()) {
        EXPECT_EQ(record.text, "depth " + std::to_string(record.indent));
        ++counts[record.indent];
    }
    for (unsigned depth = 0; depth < Threads; ++depth) {
        EXPECT_EQ(counts[depth], Records);
    }
}

TEST_F(LogTest, MaskMayChangeWhileThreadsWrite) {
    Logger logger(m_channel);
    std::atomic<bool> done{false};
    std::thread writer([&] {
        while (!done) {
            FOUNDATION_LOG(logger, Severity::Progress) << "text";
        }
    });
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (records().size() < 10 && std::chrono::steady_clock::now() < deadline) {
        setSeverityMask(m_channel, AllSeverities);
        setSeverityMask(m_channel, 0);
    }
    done = true;
    writer.join();
    const auto written = records();
    EXPECT_GE(written.size(), 10U);
    for (const Record& record : written) {
        ASSERT_EQ(record.text, "text");
    }
}

}  // namespace
}  // namespace foundation::log
