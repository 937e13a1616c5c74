// The attributes of files and folders as Java returns them.
#include <gmock/gmock.h>

#include <boost/date_time/posix_time/posix_time.hpp>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "data/DataTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using boost::posix_time::to_simple_string;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* FileSignature =
    "class foundation::storage::provider::FileAttributes __cdecl "
    "storage::javaprovider::JavaProvider::doGetFileAttributes(const class "
    "foundation::storage::provider::StorageIRI &) const";
constexpr const char* FolderSignature =
    "class foundation::storage::provider::FolderAttributes __cdecl "
    "storage::javaprovider::JavaProvider::doGetFolderAttributes(const class "
    "foundation::storage::provider::StorageIRI &) const";
constexpr const char* Source = "storage/javaprovider/src/JavaProvider";

/// The lines that a recorder writes for one getter: it is looked up on the object's class, called, the class released.
std::vector<std::string> getter(const std::string& owner, const std::string& method, const std::string& call) {
    return {"GetObjectClass", "GetMethodID com/corvallen/storage/" + owner + " " + method, call + " " + method,
            "DeleteLocalRef"};
}

std::vector<std::string> questionFor(const std::string& kind) {
    return joined({{"PushLocalFrame"},
                   makingOfUri("java://test/a"),
                   {"CallObjectMethod get" + kind +
                        "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/" + kind + ";",
                    "ExceptionCheck"}});
}

const std::vector<std::string> EndOfQuestion = {"DeleteLocalRef", "DeleteLocalRef", "PopLocalFrame"};

class FileAttributesTest : public DataTest {
protected:
    [[nodiscard]] auto file() const { return provider->getFileAttributes(location); }
    [[nodiscard]] auto folder() const { return provider->getFolderAttributes(location); }
    void askForFile() const { static_cast<void>(file()); }
    void askForFolder() const { static_cast<void>(folder()); }
};

// ---- files ----

TEST_F(FileAttributesTest, FileHasWhatJavaTells) {
    answer("fileAttributes", {"1234567890123", "1700000000123", "true"});
    const auto attributes = file();
    EXPECT_EQ(attributes.size(), 1234567890123U);
    EXPECT_EQ(to_simple_string(attributes.lastModified()), "2023-Nov-14 22:13:20.123000");
    EXPECT_TRUE(attributes.writable());
    EXPECT_THAT(javaCalls(), ElementsAre("getFileAttributes java://test/a"));
}

TEST_F(FileAttributesTest, FlagIsFalseWhenJavaSaysSo) {
    answer("fileAttributes", {"1", "2", "false"});
    EXPECT_FALSE(file().writable());
}

TEST_F(FileAttributesTest, SizeIsNeverMissing) {
    answer("fileAttributes", {"-1", "0", "true"});
    EXPECT_EQ(file().size(), std::numeric_limits<std::uint64_t>::max());
    answer("fileAttributes", {"0", "0", "true"});
    EXPECT_EQ(file().size(), 0U);
    answer("fileAttributes", {"-9223372036854775808", "0", "true"});
    EXPECT_EQ(file().size(), std::uint64_t{1} << 63U);
    answer("fileAttributes", {"9223372036854775807", "0", "true"});
    EXPECT_EQ(file().size(), (std::uint64_t{1} << 63U) - 1);
}

TEST_F(FileAttributesTest, TimesBeforeTheEpochAreTimes) {
    answer("fileAttributes", {"1", "-1", "true"});
    EXPECT_EQ(to_simple_string(file().lastModified()), "1969-Dec-31 23:59:59.999000");
    answer("fileAttributes", {"1", "0", "true"});
    EXPECT_EQ(to_simple_string(file().lastModified()), "1970-Jan-01 00:00:00");
}

TEST_F(FileAttributesTest, FileTakesExactlyTheseCallsEachTime) {
    const auto expected =
        joined({questionFor("FileAttributes"), getter("provider/FileAttributes", "isWritable()Z", "CallBooleanMethod"),
                getter("provider/FileAttributes", "getLastModified()J", "CallLongMethod"),
                getter("provider/FileAttributes", "getSize()J", "CallLongMethod"), EndOfQuestion});
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        askForFile();
        EXPECT_THAT(recorder.calls(), ElementsAreArray(expected));
    }
}

TEST_F(FileAttributesTest, GettersAreAskedOfTheObjectThatJavaGave) {
    askForFile();
    const auto object = recorder.record("CallObjectMethod getFileAttributes").resultReference;
    ASSERT_NE(object, 0U);
    for (const char* call :
         {"CallBooleanMethod isWritable", "CallLongMethod getLastModified", "CallLongMethod getSize"}) {
        EXPECT_EQ(recorder.record(call).targetReference, object) << call;
    }
    for (const JniCall& call : recorder.records({.only = "GetObjectClass"})) {
        EXPECT_EQ(call.targetReference, object);
    }
}

TEST_F(FileAttributesTest, EachClassIsReleasedThenTheObjectThenTheLocation) {
    askForFile();
    const auto classes = resultsOf("GetObjectClass");
    ASSERT_EQ(classes.size(), 3U);
    const auto text = resultsOf("NewString").at(0);
    const auto object = resultsOf("CallObjectMethod getFileAttributes").at(0);
    EXPECT_THAT(released(),
                ElementsAre(text, classes[0], classes[1], classes[2], object, resultsOf("NewObject").at(0)));
}

// ---- folders ----

TEST_F(FileAttributesTest, FolderHasWhatJavaTells) {
    answer("folderAttributes", {"1700000000123", "false"});
    EXPECT_EQ(to_simple_string(folder().lastModified()), "2023-Nov-14 22:13:20.123000");
    EXPECT_FALSE(folder().writable());
    answer("folderAttributes", {"-1", "true"});
    EXPECT_EQ(to_simple_string(folder().lastModified()), "1969-Dec-31 23:59:59.999000");
    EXPECT_TRUE(folder().writable());
}

TEST_F(FileAttributesTest, FolderTakesExactlyTheseCallsAndIsNeverAskedForASize) {
    const auto expected = joined(
        {questionFor("FolderAttributes"), getter("provider/FolderAttributes", "isWritable()Z", "CallBooleanMethod"),
         getter("provider/FolderAttributes", "getLastModified()J", "CallLongMethod"), EndOfQuestion});
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        askForFolder();
        EXPECT_THAT(recorder.calls(), ElementsAreArray(expected));
    }
}

TEST_F(FileAttributesTest, FoldersObjectIsReleasedBeforeTheLocation) {
    askForFolder();
    const auto order = released();
    ASSERT_GE(order.size(), 2U);
    EXPECT_EQ(order[order.size() - 2], resultsOf("CallObjectMethod getFolderAttributes").at(0));
    EXPECT_EQ(order.back(), resultsOf("NewObject").at(0));
}

// ---- objects of any class ----

TEST_F(FileAttributesTest, AnyClassWithTheGettersServesForAFile) {
    useOddValue("Attributes");
    const auto attributes = file();
    EXPECT_EQ(attributes.size(), 42U);
    EXPECT_EQ(to_simple_string(attributes.lastModified()), "1970-Jan-01 00:00:01.500000");
    EXPECT_TRUE(attributes.writable());
    EXPECT_THAT(javaCalls(), ElementsAre("isWritable", "getLastModified", "getSize"));
}

TEST_F(FileAttributesTest, GettersAreLookedUpOnTheObjectsOwnClass) {
    useOddValue("FailingLastModified");
    askForFolder();
    const std::string type = "test/data/OddValues$FailingLastModified";
    EXPECT_THAT(recorder.calls({.only = "GetMethodID com/corvallen/storage/" + type}),
                ElementsAre("GetMethodID com/corvallen/storage/" + type + " isWritable()Z",
                            "GetMethodID com/corvallen/storage/" + type + " getLastModified()J"));
    EXPECT_NE(takePendingException(env()), "");
}

TEST_F(FileAttributesTest, ClassWithoutASizeServesForAFolder) {
    useOddValue("WithoutSize");
    EXPECT_TRUE(folder().writable());
    EXPECT_THAT(javaCalls(), ElementsAre("isWritable", "getLastModified"));
}

/// A getter that is missing: of which class, for a file or a folder, and what was asked before.
struct MissingGetter {
    const char* value;
    bool ofFile;
    const char* method;
    const char* signature;
    std::vector<std::string> asked;

    friend void PrintTo(const MissingGetter& getter, std::ostream* out) { *out << getter.value; }
};

class MissingGetterTest : public FileAttributesTest, public ::testing::WithParamInterface<MissingGetter> {
protected:
    void run() const { GetParam().ofFile ? askForFile() : askForFolder(); }
};

TEST_P(MissingGetterTest, IsReportedAndNothingIsLeft) {
    useOddValue(GetParam().value);
    const std::string missing = std::string("Method ") + GetParam().method + " with signature " + GetParam().signature;
    EXPECT_THAT(internalErrorOf([&] { run(); }), StartsWith(missing + " not found.\njava.lang.NoSuchMethodError"));
    EXPECT_THAT(javaCalls(), ElementsAreArray(GetParam().asked));
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_P(MissingGetterTest, ReleasesTheClassThenTheObjectThenTheLocation) {
    useOddValue(GetParam().value);
    EXPECT_TRUE(throwsExactly<InternalError>([&] { run(); }));
    const auto order = released();
    ASSERT_GE(order.size(), 3U);
    EXPECT_EQ(order[order.size() - 3], resultsOf("GetObjectClass").at(GetParam().asked.size()));
    EXPECT_EQ(order[order.size() - 2], resultsOf(GetParam().ofFile ? "CallObjectMethod getFileAttributes"
                                                                   : "CallObjectMethod getFolderAttributes")
                                           .at(0));
    EXPECT_EQ(order.back(), resultsOf("NewObject com/corvallen/storage/provider/StorageURI").at(0));
}

TEST_P(MissingGetterTest, IsTracedAsAThrow) {
    useOddValue(GetParam().value);
    const auto places = traced([&] { run(); });
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.back().text, places.front().text + " [throw]");
}

INSTANTIATE_TEST_SUITE_P(
    Getters, MissingGetterTest,
    ::testing::Values(MissingGetter{"WithoutWritable", true, "isWritable", "()Z", {}},
                      MissingGetter{"WithoutLastModified", true, "getLastModified", "()J", {"isWritable"}},
                      MissingGetter{"WithoutSize", true, "getSize", "()J", {"isWritable", "getLastModified"}},
                      MissingGetter{"WithoutWritable", false, "isWritable", "()Z", {}},
                      MissingGetter{"WithoutLastModified", false, "getLastModified", "()J", {"isWritable"}}),
    [](const auto& tested) { return std::string(tested.param.ofFile ? "File" : "Folder") + tested.param.value; });

// ---- getters that throw, which they must not ----

TEST_F(FileAttributesTest, ExceptionOfTheLastGetterStaysPending) {
    useOddValue("FailingSize");
    EXPECT_NO_THROW(askForFile());
    EXPECT_EQ(recorder.count("ExceptionCheck"), 1U) << "only after the provider's method";
    EXPECT_EQ(takePendingException(env()), "java.lang.IllegalStateException: no size");
    useOddValue("FailingLastModified");
    EXPECT_NO_THROW(askForFolder());
    EXPECT_EQ(takePendingException(env()), "java.lang.IllegalStateException: no time");
}

// ---- traces ----

TEST_F(FileAttributesTest, FileIsTracedByItsOwnTextAndLine) {
    const auto places = traced([&] { askForFile(); });
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.front(), (TracedPlace{32, FileSignature, Source, 548}));
    EXPECT_EQ(places.back(), (TracedPlace{64, FileSignature, Source, 548}));
}

TEST_F(FileAttributesTest, FolderIsTracedByItsOwnTextAndLine) {
    const auto places = traced([&] { askForFolder(); });
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.front(), (TracedPlace{32, FolderSignature, Source, 575}));
    EXPECT_EQ(places.back(), (TracedPlace{64, FolderSignature, Source, 575}));
}

TEST_F(FileAttributesTest, FailuresAreTracedAsThrows) {
    script::failNext(env(), "getFileAttributes", "NOT_FOUND", "java://test/a");
    EXPECT_EQ(traced([&] { askForFile(); }).back().text, std::string(FileSignature) + " [throw]");
    script::failNext(env(), "getFolderAttributes", "NOT_FOUND", "java://test/a");
    EXPECT_EQ(traced([&] { askForFolder(); }).back().text, std::string(FolderSignature) + " [throw]");
}

TEST_F(FileAttributesTest, RemovedMachineIsTracedAsAThrowAndNothingIsCalled) {
    handle->remove();
    EXPECT_THAT(traced([&] { askForFile(); }),
                ElementsAre(TracedPlace{32, FileSignature, Source, 548},
                            TracedPlace{64, std::string(FileSignature) + " [throw]", Source, 548}));
    EXPECT_THAT(recorder.calls(), IsEmpty());
    handle->restore();
}

}  // namespace
}  // namespace storage::javaprovider::test
