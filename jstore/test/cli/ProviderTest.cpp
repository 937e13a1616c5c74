#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

/// Classes of back ends and the class path they are on.
class ProviderTest : public ::testing::Test {
protected:
    static Outcome touchWith(const std::string& provider) {
        return jstore({"--class-path", JSTORE_TEST_BACKENDS, "--provider", provider, "touch", "java:///x"});
    }

    [[nodiscard]] static Outcome touchWithClassPath(const std::string& classPath) {
        return jstore({"--class-path", classPath, "touch", "java:///nonexistent/x"});
    }

    TemporaryFolder m_folder;
};

TEST_F(ProviderTest, ClassMayHaveDotsOrSlashes) {
    EXPECT_THAT(touchWith("com.corvallen.jstore.test.LingeringProvider"), IsSilentlyDone());
    EXPECT_THAT(touchWith("com/corvallen/jstore/test/LingeringProvider"), IsSilentlyDone());
}

TEST_F(ProviderTest, ClassPathMayComeFromTheEnvironment) {
    Jstore run({"--provider", "com.corvallen.jstore.test.LingeringProvider", "touch", "java:///x"});
    EXPECT_THAT(run.with("JSTORE_CLASS_PATH", JSTORE_TEST_BACKENDS).run(), IsSilentlyDone());
}

TEST_F(ProviderTest, ClassPathMayHoldFolders) {
    EXPECT_THAT(touchWithClassPath(m_folder.path().string()), FailsWith(3, StartsWith("jstore: NotFound: ")));
}

TEST_F(ProviderTest, MissingClassIsNamedWithTheClassPath) {
    EXPECT_THAT(
        touchWith("com.example.Nope"),
        FailsWith(1,
                  AllOf(StartsWith("jstore: cannot use provider com.example.Nope: class not found on the class path ("),
                        HasSubstr(JSTORE_TEST_BACKENDS), HasSubstr("storage-backends.jar"))));
}

TEST_F(ProviderTest, ClassThatIsNoProviderIsNamed) {
    EXPECT_THAT(touchWith("com.corvallen.jstore.test.NoProvider"),
                FailsWith(1, StartsWith("jstore: cannot use provider com.corvallen.jstore.test.NoProvider: ")));
    EXPECT_THAT(touchWith("java.lang.Runnable"),
                FailsWith(1, StartsWith("jstore: cannot use provider java.lang.Runnable: ")));
}

TEST_F(ProviderTest, ConstructorThatThrowsIsToldInOneLine) {
    EXPECT_THAT(touchWith("com.corvallen.jstore.test.BrokenConstructor"),
                FailsWith(1, HasSubstr("no configuration anywhere")));
}

TEST_F(ProviderTest, ProviderThatThrowsSomethingElseIsToldInOneLine) {
    EXPECT_THAT(
        touchWith("com.corvallen.jstore.test.ThrowingProvider"),
        FailsWith(1, AllOf(StartsWith("jstore: Internal: java:///x: "), HasSubstr("java.lang.IllegalStateException"),
                           HasSubstr("first line second line third line"))));
}

TEST_F(ProviderTest, OperationThatIsNotSupportedIsEight) {
    EXPECT_THAT(touchWith("com.corvallen.jstore.test.EmptyProvider"), FailsWith(8, "jstore: NotSupported: java:///x"));
}

TEST_F(ProviderTest, ThreadLeftBehindDoesNotHoldUpTheEnd) {
    EXPECT_THAT(touchWith("com.corvallen.jstore.test.LingeringProvider"), IsSilentlyDone());
}

TEST_F(ProviderTest, MissingJarIsNamed) {
    EXPECT_THAT(
        touchWithClassPath("/nonexistent/a.jar"),
        FailsWith(1, StartsWith("jstore: class path entry /nonexistent/a.jar (--class-path): cannot be found")));
}

TEST_F(ProviderTest, BrokenJarIsNamed) {
    const auto jar = m_folder.file("broken.jar", "this is no archive").string();
    EXPECT_THAT(touchWithClassPath(std::string(JSTORE_TEST_BACKENDS) + ':' + jar),
                FailsWith(1, "jstore: class path entry " + jar + " (--class-path): not a zip archive"));
}

}  // namespace

}  // namespace jstore::test
