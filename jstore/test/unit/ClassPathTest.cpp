#include "java/ClassPath.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include "java/JarFile.h"
#include "support/TemporaryFolder.h"

namespace jstore {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

class ClassPathTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string problemOfFile(const std::string& content) const {
        return problemOf({m_folder.file("x.jar", content), "--class-path"});
    }

    test::TemporaryFolder m_folder;
    const std::string m_jar = test::contentOf(JSTORE_TEST_BACKENDS);
};

TEST_F(ClassPathTest, OptionThenEnvironmentThenInstallation) {
    Options options;
    options.classPath = {"/a.jar:/b", "/c"};
    options.environmentClassPath = ":/d::/e:";
    options.installedJars = "/usr/share/java";
    std::vector<std::string> paths;
    for (const auto& entry : classPathOf(options)) {
        paths.push_back(entry.origin + " " + entry.path.string());
    }
    EXPECT_THAT(paths, ElementsAre("--class-path /a.jar", "--class-path /b", "--class-path /c", "JSTORE_CLASS_PATH /d",
                                   "JSTORE_CLASS_PATH /e", "installation /usr/share/java/storage-provider-api.jar",
                                   "installation /usr/share/java/storage-backends.jar"));
}

TEST_F(ClassPathTest, JarAndFolderHaveNoProblem) {
    EXPECT_EQ(problemOfFile(m_jar), "");
    EXPECT_EQ(problemOf({m_folder.path(), "--class-path"}), "");
}

TEST_F(ClassPathTest, MissingEntryIsAProblem) {
    EXPECT_THAT(problemOf({m_folder / "none.jar", "--class-path"}), HasSubstr("cannot be found"));
}

TEST_F(ClassPathTest, FileThatIsNoArchiveIsAProblem) {
    EXPECT_EQ(problemOfFile(""), "not a zip archive");
    EXPECT_EQ(problemOfFile("PK\x03\x04 and then something else"), "not a zip archive");
    EXPECT_EQ(problemOfFile(m_jar.substr(0, m_jar.size() / 2)), "not a zip archive");
}

TEST_F(ClassPathTest, DamagedTableOfContentsIsAProblem) {
    // Half of the archive is cut out of the middle: its end is there, but what it points to is not.
    EXPECT_THAT(problemOfFile(m_jar.substr(m_jar.size() / 2)), HasSubstr("damaged"));
    auto blotted = m_jar;
    blotted[blotted.find("PK\1\2") + 1] = 'x';
    EXPECT_THAT(problemOfFile(blotted), HasSubstr("damaged"));
}

TEST_F(ClassPathTest, JarMayFollowAProgramThatUnpacksIt) {
    const ClassPathEntry jar{m_folder.file("x.jar", "#!/bin/sh\nexec java -jar \"$0\" \"$@\"\n" + m_jar), ""};
    EXPECT_EQ(problemOf(jar), "");
    EXPECT_TRUE(holdsClass(jar, "com.corvallen.jstore.test.EmptyProvider"));
    EXPECT_EQ(problemOfFile(std::string(100000, 'x') + m_jar), "");
}

TEST_F(ClassPathTest, JarMayHaveBytesAfterIt) {
    EXPECT_EQ(problemOfFile(m_jar + "a signature, or a line that an upload has added"), "");
    EXPECT_EQ(problemOfFile("before" + m_jar + "after"), "");
    EXPECT_EQ(problemOfFile(m_jar + std::string(70000, 'x')), "not a zip archive");
}

TEST_F(ClassPathTest, JarWithoutMembersIsNoProblem) { EXPECT_EQ(problemOfFile("PK\5\6" + std::string(18, '\0')), ""); }

TEST_F(ClassPathTest, CommentMayLookLikeAnEnd) {
    auto jar = m_jar;
    const std::string comment = "PK\5\6" + std::string(30, 'x');
    jar[jar.size() - 2] = static_cast<char>(comment.size());
    EXPECT_EQ(problemOfFile(jar + comment), "");
}

TEST_F(ClassPathTest, TableOfContentsBeforeTheFileIsAProblem) {
    auto jar = m_jar;
    jar[jar.size() - 3] = '\x7f';  // the highest byte of the place where the table begins
    EXPECT_THAT(problemOfFile(jar), HasSubstr("damaged"));
    jar = m_jar;
    jar[jar.size() - 7] = '\x7f';  // the same of its size
    EXPECT_THAT(problemOfFile(jar), HasSubstr("damaged"));
}

TEST_F(ClassPathTest, PipeIsAProblem) {
    const auto path = m_folder / "pipe";
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(problemOf({path, "--class-path"}), "neither a folder nor a jar");
}

TEST_F(ClassPathTest, ClassIsFoundInAJar) {
    const ClassPathEntry jar{m_folder.file("x.jar", m_jar), ""};
    EXPECT_TRUE(holdsClass(jar, "com.corvallen.jstore.test.EmptyProvider"));
    EXPECT_TRUE(holdsClass(jar, "com/corvallen/jstore/test/EmptyProvider"));
    EXPECT_FALSE(holdsClass(jar, "com.corvallen.jstore.test.Nothing"));
}

TEST_F(ClassPathTest, ClassIsFoundInAFolder) {
    m_folder.folder("com/example");
    m_folder.file("com/example/A.class");
    EXPECT_TRUE(holdsClass({m_folder.path(), ""}, "com.example.A"));
    EXPECT_FALSE(holdsClass({m_folder.path(), ""}, "com.example.B"));
}

TEST_F(ClassPathTest, ClassNamesAreWrittenBothWays) {
    EXPECT_EQ(slashed("com.example.A$B"), "com/example/A$B");
    EXPECT_EQ(dotted("com/example/A$B"), "com.example.A$B");
}

}  // namespace

}  // namespace jstore
