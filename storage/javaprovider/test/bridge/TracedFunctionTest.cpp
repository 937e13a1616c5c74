#include <gmock/gmock.h>

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core.hpp>

#include <atomic>
#include <optional>
#include <stdexcept>

#include "BridgeTest.h"
#include "JNIUtilsClass.h"
#include "JNIUtilsLog.h"
#include "RecordHook.h"
#include "TraceRecords.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Runs the library's traced functions against Java.
class TracedFunctionTest : public BridgeTest {
protected:
    void search() { static_cast<void>(loadClass(guard(), nullptr, "java.util.HashMap")); }
    void failToFind() { static_cast<void>(getMethodID(guard(), classNamed("java/lang/String"), "absent", "()V")); }
};

TEST_F(TracedFunctionTest, SearchHasTheSameSignatureWhateverTheCompiler) {
    const LogCapture log(Enter | Exit);
    search();
    const std::string signature =
        "class _jclass *__cdecl storage::javaprovider::loadClass(const class storage::javaprovider::JNIEnvPtr &,"
        "class _jobject *const ,const class std::basic_string<char,struct std::char_traits<char>,"
        "class std::allocator<char> > &)";
    const auto texts = log.texts();
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts.front(), signature);
    EXPECT_EQ(texts.back(), signature);
}

TEST_F(TracedFunctionTest, LookupLeftByAnExceptionSaysSo) {
    const LogCapture log(Enter | Exit);
    EXPECT_THROW(failToFind(), std::runtime_error);
    const auto texts = log.texts();
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_THAT(texts[0], HasSubstr("storage::javaprovider::getMethodID("));
    EXPECT_EQ(texts[1], texts[0] + " [throw]");
}

TEST_F(TracedFunctionTest, SearchLeftByAnExceptionSaysSo) {
    const LogCapture log(Exit | Enter);
    recorder.fail({.call = "GetMethodID java/lang/ClassLoader getParent",
                   .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
    EXPECT_THROW(search(), std::runtime_error);
    const auto texts = log.texts();
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts.back(), texts.front() + " [throw]");
    EXPECT_EQ(depth(), 0U);
}

TEST_F(TracedFunctionTest, FunctionsNameTheirSource) {
    std::vector<std::string> files;
    std::vector<std::uint32_t> lines;
    const LogCapture log(Enter);
    const RecordHook hook([&](const boost::log::record_view& record) {
        files.push_back(boost::log::extract_or_default<std::string>("File", record, std::string()));
        lines.push_back(boost::log::extract_or_default<std::uint32_t>("Line", record, 0U));
    });
    search();
    const std::string source = "storage/javaprovider/src/JNIUtils";
    EXPECT_THAT(files, ElementsAre(source, source, source));
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_GT(lines[0], 0U);
    EXPECT_GT(lines[1], 0U);
    EXPECT_NE(lines[0], lines[1]) << "loadClass and getMethodID stand on different lines";
    EXPECT_EQ(lines[1], lines[2]);
}

TEST_F(TracedFunctionTest, FailureIsToldBeforeJavaIsAskedForItsReason) {
    std::optional<std::size_t> questions;
    const LogCapture log(static_cast<std::uint32_t>(Severity::Failure));
    const RecordHook hook([&](const boost::log::record_view&) { questions = recorder.count("ExceptionCheck"); });
    EXPECT_THROW(failToFind(), std::runtime_error);
    EXPECT_EQ(questions, 0U);
}

/// Counts the records that anybody tries to open, by standing in for the core's filter.
class OpenedRecords {
public:
    OpenedRecords() {
        boost::log::core::get()->set_filter([this](const boost::log::attribute_value_set&) {
            ++m_count;
            return true;
        });
    }
    ~OpenedRecords() { boost::log::core::get()->reset_filter(); }
    OpenedRecords(const OpenedRecords&) = delete;
    OpenedRecords& operator=(const OpenedRecords&) = delete;

    [[nodiscard]] int count() const { return m_count; }

private:
    std::atomic<int> m_count = 0;
};

TEST_F(TracedFunctionTest, MaskZeroOpensNoRecord) {
    const LogCapture log(0);
    const OpenedRecords opened;
    search();
    EXPECT_THROW(failToFind(), std::runtime_error);
    EXPECT_EQ(opened.count(), 0);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TracedFunctionTest, EachAcceptedRecordIsOpenedOnce) {
    const LogCapture log;
    const OpenedRecords opened;
    search();
    EXPECT_EQ(static_cast<std::size_t>(opened.count()), log.records().size());
}

TEST_F(TracedFunctionTest, LogThatIsSwitchedOffAsAWholeChangesNothingElse) {
    const LogCapture log;
    boost::log::core::get()->set_logging_enabled(false);
    EXPECT_NE(loadClass(guard(), nullptr, "java.util.HashMap"), nullptr);
    boost::log::core::get()->set_logging_enabled(true);
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_EQ(depth(), 0U);
}

TEST_F(TracedFunctionTest, SinkThatFailsAtTheExitDoesNotCostTheResult) {
    const LogCapture log(Enter | Exit);
    const RecordHook hook([](const boost::log::record_view& record) {
        if (boost::log::extract_or_default<Severity>("Severity", record, Severity{}) == Severity::Exit) {
            throw std::runtime_error("the disk is full");
        }
    });
    EXPECT_NE(loadClass(guard(), nullptr, "java.util.HashMap"), nullptr);
    EXPECT_EQ(depth(), 0U);
}

}  // namespace

}  // namespace storage::javaprovider::test
