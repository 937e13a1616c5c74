#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/FolderTest.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

class RmTest : public FolderTest {};

TEST_F(RmTest, FileIsRemovedInSilence) {
    m_folder.file("a");
    EXPECT_THAT(jstore({"rm", at("a")}), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(RmTest, NothingIsThree) {
    EXPECT_THAT(jstore({"rm", at("a")}), FailsWith(3, "jstore: NotFound: " + at("a")));
    EXPECT_THAT(jstore({"rm", "-r", at("a")}), FailsWith(3, "jstore: NotFound: " + at("a")));
}

TEST_F(RmTest, FolderIsKept) {
    m_folder.folder("a");
    EXPECT_THAT(jstore({"rm", at("a")}),
                FailsWith(1, AllOf(StartsWith("jstore: NotAFile: " + at("a")), HasSubstr("rm -r"))));
    EXPECT_TRUE(fs::is_directory(m_folder / "a"));
}

TEST_F(RmTest, FolderGoesWithAllItHolds) {
    m_folder.folder("a/b/c");
    m_folder.file("a/b/file", "content");
    EXPECT_THAT(jstore({"rm", "-r", at("a")}), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(RmTest, FileGoesWithRecursiveToo) {
    m_folder.file("a");
    EXPECT_THAT(jstore({"rm", "-r", at("a")}), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(RmTest, LinkGoesAndItsTargetStays) {
    m_folder.folder("target");
    m_folder.file("target/file");
    fs::create_directory_symlink(m_folder / "target", m_folder / "link");
    fs::create_symlink(m_folder / "nowhere", m_folder / "dangling");
    EXPECT_THAT(jstore({"rm", at("dangling")}), IsSilentlyDone());
    EXPECT_THAT(jstore({"rm", "-r", at("link")}), IsSilentlyDone());
    EXPECT_FALSE(fs::is_symlink(m_folder / "link"));
    EXPECT_FALSE(fs::is_symlink(m_folder / "dangling"));
    EXPECT_TRUE(fs::exists(m_folder / "target/file"));
}

TEST_F(RmTest, RootIsRefused) {
    for (const auto* const root :
         {"java:///", "/", "java://", "java:////", "java:///.", "java:///%2e", "java:///a/.."}) {
        const auto outcome = jstore({"--provider", "com.corvallen.jstore.test.EmptyProvider", "--class-path",
                                     JSTORE_TEST_BACKENDS, "rm", "-r", root});
        EXPECT_NE(outcome.exitCode, 0) << root;
        EXPECT_EQ(outcome.errLines().size(), 1U) << root << outcome.err;
        EXPECT_THAT(outcome.err, ::testing::AnyOf(HasSubstr("AccessDenied"), HasSubstr("are never removed"))) << root;
    }
}

TEST_F(RmTest, DotsAreRefused) {
    m_folder.folder("a");
    for (const auto* const dots : {".", "..", "./", "../", "a/.", "a/.."}) {
        EXPECT_THAT(Jstore({"rm", "-r", dots}).in(m_folder.path()).run(), FailsWith(2, HasSubstr("are never removed")))
            << dots;
    }
    EXPECT_TRUE(fs::is_directory(m_folder / "a"));
}

/// A back end that cannot remove a folder with all it holds.
class OneByOneTest : public RmTest {
protected:
    [[nodiscard]] static Outcome rm(const std::string& location, const std::string& provider = "OneByOneProvider") {
        return jstore({"--class-path", JSTORE_TEST_BACKENDS, "--provider", "com.corvallen.jstore.test." + provider,
                       "--jvm-option", "-Djstore.test.depth=2500", "rm", "-r", location});
    }
};

TEST_F(OneByOneTest, FolderGoesWithAllItHolds) {
    m_folder.folder("a/b/c");
    m_folder.folder("a/empty");
    m_folder.file("a/b/file", "content");
    EXPECT_THAT(rm(at("a")), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(OneByOneTest, LinksAreNotFollowed) {
    m_folder.folder("a");
    m_folder.folder("target");
    m_folder.file("target/file");
    fs::create_directory_symlink(m_folder / "target", m_folder / "a/link");
    fs::create_directory_symlink(m_folder / "target", m_folder / "link");
    fs::create_symlink(m_folder / "nowhere", m_folder / "a/dangling");
    EXPECT_THAT(rm(at("a")), IsSilentlyDone());
    EXPECT_THAT(rm(at("link")), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "a"));
    EXPECT_FALSE(fs::is_symlink(m_folder / "link"));
    EXPECT_TRUE(fs::exists(m_folder / "target/file"));
}

TEST_F(OneByOneTest, WhatStaysIsReportedAndTheRestGoes) {
    m_folder.folder("a/b");
    m_folder.folder("a/c");
    m_folder.file("a/b/kept");
    m_folder.file("a/b/other");
    m_folder.file("a/c/file");
    EXPECT_THAT(rm(at("a")), FailsWith(6, "jstore: AccessDenied: " + at("a/b/kept")));
    EXPECT_TRUE(fs::exists(m_folder / "a/b/kept"));
    EXPECT_FALSE(fs::exists(m_folder / "a/b/other"));
    EXPECT_FALSE(fs::exists(m_folder / "a/c"));
}

TEST_F(OneByOneTest, DeepTreesGoToo) { EXPECT_THAT(rm("java:///d", "DeepProvider"), Prints("0\n")); }

/// A back end that says of one folder that it holds more than Java has memory for.
TEST_F(RmTest, FolderThatCannotBeListedIsRemovedAtOnce) {
    m_folder.file("a/huge/file");
    m_folder.file("a/other");
    EXPECT_THAT(jstore({"--class-path", JSTORE_TEST_BACKENDS, "--provider", "com.corvallen.jstore.test.GatedProvider",
                        "rm", "-r", at("a")}),
                IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

/// Folders in folders, deeper than any path reaches; what is left of them is removed with the object.
class DeepFolder {
public:
    explicit DeepFolder(const fs::path& place) : m_place(place) {
        const std::string name(200, 'd');
        fs::create_directory(place);
        int folder = ::open(place.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        for (int level = 0; level < 60 && folder >= 0; ++level) {
            const int inner = ::mkdirat(folder, name.c_str(), 0755) == 0
                                  ? ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)
                                  : -1;
            ::close(folder);
            folder = inner;
        }
        EXPECT_GE(folder, 0);
        ::close(folder);
    }
    ~DeepFolder() { fs::remove_all(m_place); }
    DeepFolder(const DeepFolder&) = delete;
    DeepFolder& operator=(const DeepFolder&) = delete;

private:
    fs::path m_place;
};

TEST_F(RmTest, FolderDeeperThanAnyLocationGoes) {
    const DeepFolder deep(m_folder / "deep");
    EXPECT_THAT(jstore({"rm", "-r", at("deep")}), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "deep"));
}

TEST_F(RmTest, AllFailingAlikeKeepTheirCode) {
    const auto outcome = jstore({"rm", at("a"), at("b")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errLines().size(), 2U);
}

TEST_F(RmTest, FailingDifferentlyIsSix) {
    m_folder.folder("a");
    EXPECT_EQ(jstore({"rm", at("a"), at("b")}).exitCode, 6);
}

}  // namespace

}  // namespace jstore::test
