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

TEST_F(ProviderTest, JarBehindAScriptIsUsed) {
    const auto jar = m_folder.file("x.jar", "#!/bin/sh\nexec java -jar \"$0\"\n" + contentOf(JSTORE_TEST_BACKENDS));
    EXPECT_THAT(jstore({"--class-path", jar.string(), "--provider", "com.corvallen.jstore.test.LingeringProvider",
                        "touch", "java:///x"}),
                IsSilentlyDone());
}

/// A variable with options for Java, all of which jstore's own preferences would be at odds with.
struct Surroundings {
    const char* variable;
    const char* value;
};

TEST(EnvironmentTest, OptionsInTheEnvironmentWinOverPreferences) {
    for (const auto& [variable, value] : {Surroundings{"JAVA_TOOL_OPTIONS", "-XX:+UseG1GC"},
                                          {"_JAVA_OPTIONS", "-XX:+UseParallelGC"},
                                          {"JAVA_TOOL_OPTIONS", "-Xms512m"},
                                          {"_JAVA_OPTIONS", "-Xmx32m -Xms16m"},
                                          {"JAVA_TOOL_OPTIONS", "-Xshare:on"},
                                          {"_JAVA_OPTIONS", "-Xshare:off"},
                                          {"JAVA_TOOL_OPTIONS", "-XX:SharedArchiveFile=/nowhere.jsa"},
                                          {"_JAVA_OPTIONS", "-Xint"},
                                          {"JAVA_TOOL_OPTIONS", "-XX:-TieredCompilation"},
                                          {"JDK_JAVA_OPTIONS", "-nonsense"}}) {
        const auto outcome = Jstore({"exists", "/nonexistent"}).with(variable, value).run();
        EXPECT_EQ(outcome.out + outcome.err, "missing\n") << variable << "=" << value;
    }
}

/// jstore in a working folder that is removed before it starts.
Outcome withoutFolder(std::vector<std::string> arguments) {
    const TemporaryFolder folder;
    const auto place = folder.folder("gone").string();
    return Jstore(std::move(arguments))
        .in(place)
        .through({"/bin/sh", "-c", "rmdir '" + place + "' && exec \"$0\" \"$@\""})
        .run();
}

TEST(WorkingFolderTest, IsNotNeededForAbsoluteLocations) {
    const TemporaryFolder folder;
    folder.file("a");
    EXPECT_THAT(withoutFolder({"ls", folder.path().string()}), Prints("a\n"));
    EXPECT_THAT(withoutFolder({"ls", "java://" + folder.path().string()}), Prints("a\n"));
    EXPECT_THAT(withoutFolder({"--mount", "m=" + folder.path().string(), "ls", "java://m/"}), Prints("a\n"));
}

TEST(WorkingFolderTest, RelativeLocationSaysThatItIsMissing) {
    EXPECT_THAT(withoutFolder({"ls", "a"}),
                FailsWith(3, StartsWith("jstore: NotFound: a: cannot find the working folder: ")));
}

TEST(EnvironmentTest, ErrorNamesTheVariable) {
    for (const auto* const variable : {"JAVA_TOOL_OPTIONS", "_JAVA_OPTIONS"}) {
        EXPECT_THAT(Jstore({"exists", "/nonexistent"}).with(variable, "-XX:+NoSuchOption").run(),
                    FailsWith(1, AllOf(StartsWith("jstore: Java does not start: "), HasSubstr("NoSuchOption"),
                                       HasSubstr(std::string(variable) + "=-XX:+NoSuchOption"))));
    }
}

}  // namespace

}  // namespace jstore::test
