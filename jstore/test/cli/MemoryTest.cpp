#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

constexpr const char* Words = ": Java is out of memory; --jvm-option -Xmx1g gives it more";

/// What jstore does over a back end that asks for more memory than any Java has.
Outcome exhausted(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--class-path", JSTORE_TEST_BACKENDS, "--provider",
                                         "com.corvallen.jstore.test.ExhaustedProvider"});
    return jstore(std::move(arguments));
}

TEST(MemoryTest, EachVerbNamesTheOptionForMore) {
    const std::vector<std::vector<std::string>> commands{{"ls", "java:///x"},
                                                         {"ls", "-R", "java:///x"},
                                                         {"tree", "java:///x"},
                                                         {"find", "java:///x"},
                                                         {"du", "java:///x"},
                                                         {"df", "java:///x"},
                                                         {"stat", "java:///x"},
                                                         {"exists", "java:///x"},
                                                         {"cat", "java:///x"},
                                                         {"touch", "java:///x"},
                                                         {"mkdir", "java:///x"},
                                                         {"rm", "java:///x"},
                                                         {"rm", "-r", "java:///x"},
                                                         {"mv", "java:///x", "java:///y"},
                                                         {"cp", "java:///x", "java:///y"}};
    for (const auto& command : commands) {
        const auto outcome = exhausted(command);
        EXPECT_EQ(outcome.exitCode, 1) << command.front();
        EXPECT_THAT(outcome.err, AllOf(StartsWith("jstore: OutOfMemory: java:///"), HasSubstr(Words)))
            << command.front();
    }
}

TEST(MemoryTest, JsonHasTheWord) {
    EXPECT_THAT(exhausted({"--json", "ls", "java:///x"}).out, HasSubstr(R"("code":"OutOfMemory")"));
}

// The entries are there, and do not fit: the error comes in the midst of a listing.
TEST(MemoryTest, FolderThatIsTooLargeForTheHeapSaysSo) {
    EXPECT_THAT(exhausted({"--jvm-option", "-Xmx5m", "ls", "java:///large"}),
                FailsWith(1, std::string("jstore: OutOfMemory: java:///large") + Words));
}

}  // namespace

}  // namespace jstore::test
