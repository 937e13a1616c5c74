#include <sys/resource.h>

#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

/// What a back end could not write when it was ended.
class EndTest : public ::testing::Test {
protected:
    static Outcome touchAndEnd(const std::string& end, const std::string& location = "java:///x") {
        return jstore({"--class-path", JSTORE_TEST_BACKENDS, "--provider", "com.corvallen.jstore.test.LosingProvider",
                       "--jvm-option", "-Djstore.test.end=" + end, "touch", location});
    }

    TemporaryFolder m_folder;
};

TEST_F(EndTest, BackEndIsClosedBeforeItIsDisposedOf) { EXPECT_THAT(touchAndEnd("well"), IsSilentlyDone()); }

TEST_F(EndTest, FailureToCloseHasItsCodeAndLocation) {
    EXPECT_THAT(touchAndEnd("coded"), FailsWith(5, "jstore: AccessDenied: java://lost/: what was written may be lost"));
}

TEST_F(EndTest, OtherFailureToCloseIsUnknown) {
    EXPECT_THAT(touchAndEnd("plain"), FailsWith(1,
                                                "jstore: Unknown: what was written may be lost: "
                                                "java.lang.IllegalStateException: the bytes are gone"));
}

TEST_F(EndTest, DisposalThatThrowsIsTold) {
    EXPECT_THAT(touchAndEnd("disposal"),
                FailsWith(1, AllOf(StartsWith("jstore: Unknown: "), HasSubstr("lost at disposal"))));
}

TEST_F(EndTest, ExitCodeOfTheVerbStays) {
    const auto outcome =
        jstore({"--class-path", JSTORE_TEST_BACKENDS, "--provider", "com.corvallen.jstore.test.LosingProvider",
                "--jvm-option", "-Djstore.test.end=plain", "stat", "java:///nothing"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errLines().size(), 2U);
}

TEST_F(EndTest, JsonHasAnObjectOfItsOwn) {
    const auto outcome = jstore({"--json", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                                 "com.corvallen.jstore.test.LosingProvider", "--jvm-option", "-Djstore.test.end=coded",
                                 "touch", "java:///x"});
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0]["ok"], true);
    EXPECT_EQ(objects[1]["ok"], false);
    EXPECT_EQ(objects[1]["error"]["code"], "AccessDenied");
    EXPECT_EQ(objects[1]["error"]["location"], "java://lost/");
}

/// Limits the size of the files that child processes write, for the life of a scope.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_before{};
};

std::string noise(std::size_t bytes) {
    std::string text;
    for (unsigned state = 1; text.size() < bytes; state = state * 1'103'515'245U + 12'345U) {
        text += static_cast<char>(state >> 16U & 0xFFU);
    }
    return text;
}

TEST_F(EndTest, ArchiveThatCannotBeWrittenIsTold) {
    const auto archive = m_folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    const auto copyAll = [&] {
        std::vector<std::string> arguments{"--mount", "zip=jar:file://" + archive.string(), "cp"};
        for (const auto* const name : {"a", "b", "c", "d"}) {
            m_folder.file(name, noise(60'000));
            arguments.push_back(m_folder.location(name));
        }
        arguments.emplace_back("java://zip/");
        // With a limit the counts of lines that an instrumented program writes at its end would not fit either.
        return Jstore(arguments).with("LLVM_PROFILE_FILE", "/dev/null").run();
    };
    const auto base = m_folder.file("base", noise(500'000)).string();
    ASSERT_THAT(jstore({"--mount", "zip=jar:file://" + archive.string(), "cp", base, "java://zip/"}), IsSilentlyDone());
    const auto before = contentOf(archive);
    const auto outcome = [&] {
        const FileSizeLimit limit(600'000);  // What is copied fits, the archive with it does not.
        return copyAll();
    }();
    EXPECT_THAT(outcome,
                FailsWith(1, "jstore: StorageFull: java://zip/: what was written may be lost: file too large"));
    EXPECT_TRUE(before == contentOf(archive));
    EXPECT_FALSE(std::filesystem::exists(m_folder / ".storage-archive-a.zip"));
    EXPECT_THAT(copyAll(), IsSilentlyDone());
}

}  // namespace

}  // namespace jstore::test
