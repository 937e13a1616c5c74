// Setting the time of last modification.
#include <gmock/gmock.h>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/log/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <stdexcept>
#include <string>

#include "data/DataTest.h"
#include "provider/ThrownErrors.h"

namespace storage::javaprovider::test {
namespace {

using boost::gregorian::date;
using boost::posix_time::microseconds;
using boost::posix_time::ptime;
using foundation::log::Severity;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class SetLastModifiedTest : public DataTest {
protected:
    [[nodiscard]] static ptime epoch() { return ptime(date(1970, 1, 1)); }
    void set(const ptime& time) const { provider->setLastModified(location, time); }
    /// The number that Java got when the time was set.
    [[nodiscard]] std::int64_t sent(const ptime& time) {
        recorder.clear();
        set(time);
        return recorder.record("CallVoidMethod setLastModified").longArgument(1);
    }
};

TEST_F(SetLastModifiedTest, SendsTheLocationAndMilliseconds) {
    set(epoch() + boost::posix_time::milliseconds(1700000000123));
    EXPECT_THAT(javaCalls(), ElementsAre("setLastModified java://test/a 1700000000123"));
}

TEST_F(SetLastModifiedTest, PartsOfAMillisecondAreCutTowardsZero) {
    EXPECT_EQ(sent(epoch() + microseconds(999)), 0);
    EXPECT_EQ(sent(epoch() - microseconds(500)), 0);
    EXPECT_EQ(sent(epoch() - microseconds(1500)), -1);
    EXPECT_EQ(sent(epoch() - microseconds(1)), 0);
}

TEST_F(SetLastModifiedTest, SpecialTimesAreSentAsTheyCount) {
    EXPECT_EQ(sent(ptime(boost::posix_time::not_a_date_time)), 9223372036854775);
    EXPECT_EQ(sent(ptime(boost::posix_time::pos_infin)), 9223372036854775);
    EXPECT_EQ(sent(ptime(boost::posix_time::neg_infin)), -9223372036854775);
}

TEST_F(SetLastModifiedTest, MakesExactlyTheseCalls) {
    set(epoch());
    EXPECT_THAT(
        recorder.calls(),
        ElementsAreArray(joined({{"PushLocalFrame"},
                                 makingOfUri("java://test/a"),
                                 {"CallVoidMethod setLastModified(Lcom/corvallen/storage/provider/StorageURI;J)V",
                                  "ExceptionCheck", "DeleteLocalRef", "PopLocalFrame"}})));
    EXPECT_EQ(recorder.record("CallVoidMethod setLastModified").referenceArgument(0),
              recorder.record("NewObject").resultReference);
}

TEST_F(SetLastModifiedTest, ArgumentsAreLoggedBetweenEntryAndTheFirstCall) {
    LogCapture log(EnterAndExit | 2U);
    set(epoch() + microseconds(1500));
    const auto records = log.records();
    ASSERT_GE(records.size(), 3U);
    EXPECT_THAT(records[0].text, HasSubstr("doSetLastModified("));
    EXPECT_EQ(records[1],
              (LogRecord{Severity::Arguments, " iri=java://test/a lastModified=1970-Jan-01 00:00:00.001500", 1}));
    EXPECT_THAT(records[2].text, HasSubstr("createStorageUri("));
    EXPECT_EQ(records.back().text, records.front().text);
}

TEST_F(SetLastModifiedTest, NonAsciiLocationIsLoggedAsUtf8) {
    LogCapture log(2);
    provider->setLastModified(StorageIRI(u"java://test/ä"), ptime(boost::posix_time::not_a_date_time));
    EXPECT_THAT(log.texts(), ElementsAre(" iri=java://test/\u00e4 lastModified=not-a-date-time"));
}

TEST_F(SetLastModifiedTest, TimesOfAllYearsAreLoggedAndSent) {
    constexpr std::int64_t Year1 = -62135596800000;
    constexpr std::int64_t Year1400 = -17987443200000;
    constexpr std::int64_t Year10000 = 253402300800000;
    LogCapture log(2);
    for (const std::int64_t millis : {Year1, Year1400 - 1, Year1400, Year10000 - 1, Year10000}) {
        EXPECT_EQ(sent(epoch() + boost::posix_time::milliseconds(millis)), millis);
    }
    EXPECT_THAT(log.texts(), ElementsAre(" iri=java://test/a lastModified=-62135596800000 ms since 1970",
                                         " iri=java://test/a lastModified=-17987443200001 ms since 1970",
                                         " iri=java://test/a lastModified=1400-Jan-01 00:00:00",
                                         " iri=java://test/a lastModified=9999-Dec-31 23:59:59.999000",
                                         " iri=java://test/a lastModified=253402300800000 ms since 1970"));
}

TEST_F(SetLastModifiedTest, SpecialTimesAreLoggedAndSent) {
    LogCapture log(2);
    EXPECT_EQ(sent(ptime(boost::posix_time::not_a_date_time)), 9223372036854775);
    EXPECT_EQ(sent(ptime(boost::posix_time::pos_infin)), 9223372036854775);
    EXPECT_EQ(sent(ptime(boost::posix_time::neg_infin)), -9223372036854775);
    EXPECT_THAT(log.texts(), ElementsAre(EndsWith("=not-a-date-time"), EndsWith("=+infinity"), EndsWith("=-infinity")));
}

/// A sink of a host that fails at every record.
struct FailingBackend : boost::log::sinks::basic_sink_backend<boost::log::sinks::synchronized_feeding> {
    void consume(const boost::log::record_view&) { throw std::runtime_error("the disk of the log is full"); }
};

TEST_F(SetLastModifiedTest, SinkThatThrowsChangesNoResult) {
    const auto sink = boost::make_shared<boost::log::sinks::synchronous_sink<FailingBackend>>();
    boost::log::core::get()->add_sink(sink);
    const LogCapture log;  // every severity
    EXPECT_EQ(sent(epoch()), 0);
    script::failNext(env(), "setLastModified", "NOT_FOUND", "java://test/a");
    const auto error = thrownBy<ProviderError>([&] { set(epoch()); });
    EXPECT_TRUE(error && error->code() == foundation::storage::provider::ErrorCode::NotFound);
    boost::log::core::get()->remove_sink(sink);
}

TEST_F(SetLastModifiedTest, NothingIsLoggedWhileTheSeverityIsOff) {
    LogCapture log(~2U);
    set(epoch());
    EXPECT_THAT(log.texts(Severity::Arguments), IsEmpty());
}

TEST_F(SetLastModifiedTest, ArgumentsAreLoggedEvenWhenTheMachineIsGone) {
    LogCapture log(2);
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { set(epoch()); }), "JVM remvoed");
    EXPECT_EQ(log.texts().size(), 1U);
    handle->restore();
}

TEST_F(SetLastModifiedTest, IsTracedWithItsSourceAndLine) {
    const auto places = traced([&] { set(epoch()); });
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.front().severity, 32U);
    EXPECT_THAT(places.front().text, AllOf(HasSubstr("storage::javaprovider::JavaProvider::doSetLastModified("),
                                           HasSubstr("StorageIRI"), HasSubstr("ptime"), EndsWith(") const")));
    EXPECT_EQ(places.front().file, "storage/javaprovider/src/JavaProvider");
    EXPECT_EQ(places.front().line, 718U);
    EXPECT_EQ(places.back(), (TracedPlace{64, places.front().text, places.front().file, 718}));
}

TEST_F(SetLastModifiedTest, FailureIsTracedAsAThrow) {
    script::failNext(env(), "setLastModified", "NOT_FOUND", "java://test/a");
    const auto places = traced([&] { set(epoch()); });
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.back().text, places.front().text + " [throw]");
}

}  // namespace
}  // namespace storage::javaprovider::test
