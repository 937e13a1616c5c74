#include "CpTest.h"
#include "support/Matchers.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

namespace {

class CpFolderTest : public CpTest {
protected:
    CpFolderTest() {
        m_folder.folder("d/e/empty");
        m_folder.file("d/one", "1");
        m_folder.file("d/e/two two", "22");
    }
};

TEST_F(CpFolderTest, FolderNeedsRecursive) {
    EXPECT_THAT(jstore({"cp", at("d"), at("f")}), FailsWith(1, AllOf(HasSubstr("NotAFile"), HasSubstr("cp -r"))));
    EXPECT_FALSE(fs::exists(m_folder / "f"));
}

TEST_F(CpFolderTest, FolderIsCopiedWithAllItHoldsAndItsTimes) {
    const auto time = longAgo();
    for (const auto* const name : {"d/e/two two", "d/e", "d"}) {
        fs::last_write_time(m_folder / name, time);
    }
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("f")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "f/one"), "1");
    EXPECT_EQ(contentOf(m_folder / "f/e/two two"), "22");
    EXPECT_TRUE(fs::is_directory(m_folder / "f/e/empty"));
    for (const auto* const name : {"f/e/two two", "f/e", "f"}) {
        EXPECT_EQ(fs::last_write_time(m_folder / name), time) << name;
    }
}

TEST_F(CpFolderTest, FolderGoesIntoAFolder) {
    m_folder.folder("into");
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("a"), at("into")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "into/d/one"), "1");
    EXPECT_EQ(contentOf(m_folder / "into/a"), "content of a");
}

TEST_F(CpFolderTest, FolderAtTheTargetIsKeptOrAddedTo) {
    m_folder.folder("into/d/old");
    m_folder.file("into/d/one", "old one");
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("into")}), FailsWith(4, "jstore: AlreadyExists: " + at("into/d")));
    EXPECT_EQ(contentOf(m_folder / "into/d/one"), "old one");
    EXPECT_THAT(jstore({"cp", "-r", "--replace", at("d"), at("into")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "into/d/one"), "1");
    EXPECT_TRUE(fs::is_directory(m_folder / "into/d/old"));
}

TEST_F(CpFolderTest, FolderGoesIntoAnArchiveAndBack) {
    const auto archive = m_folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    const auto mount = "zip=jar:file://" + archive.string();
    EXPECT_THAT(jstore({"--mount", mount, "cp", "-r", at("d"), "java://zip/"}), IsSilentlyDone());
    EXPECT_THAT(jstore({"--mount", mount, "cp", "-r", "java://zip/d", at("f")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "f/e/two two"), "22");
    EXPECT_TRUE(fs::is_directory(m_folder / "f/e/empty"));
}

TEST_F(CpFolderTest, FolderDoesNotGoIntoItself) {
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("d/e")}), FailsWith(1, HasSubstr("InvalidLocation: " + at("d/e/d"))));
    EXPECT_FALSE(fs::exists(m_folder / "d/e/d"));
}

TEST_F(CpFolderTest, FolderDoesNotGoIntoItselfUnderAnotherName) {
    fs::create_directory_symlink("d", m_folder / "link");
    const auto mount = "here=" + (m_folder / "d").string();
    for (const auto& target : {at("link"), std::string("java://here/")}) {
        EXPECT_THAT(jstore({"--mount", mount, "cp", "-r", at("d"), target}),
                    FailsWith(1, HasSubstr("a folder cannot be copied into itself")));
    }
    EXPECT_THAT(jstore({"cp", "-r", "--replace", at("d"), at("link")}), FailsWith(1, HasSubstr("InvalidLocation")));
    EXPECT_FALSE(fs::exists(m_folder / "d/d"));
}

TEST_F(CpFolderTest, FolderInTheSourceToWhichTheCopyGoesIsNotCopied) {
    fs::create_directory_symlink("d/e", m_folder / "link");
    const auto mount = "deep=" + (m_folder / "d/e").string();
    for (const auto& target : {at("link"), std::string("java://deep/")}) {
        EXPECT_THAT(jstore({"--mount", mount, "cp", "-r", at("d"), target}),
                    FailsWith(6, StartsWith("jstore: InvalidLocation: " + at("d/e/d"))));
        EXPECT_EQ(contentOf(m_folder / "d/e/d/one"), "1");
        EXPECT_EQ(contentOf(m_folder / "d/e/d/e/two two"), "22");
        EXPECT_FALSE(fs::exists(m_folder / "d/e/d/e/d"));
        fs::remove_all(m_folder / "d/e/d");
    }
}

TEST_F(CpFolderTest, NothingIsAddedToAFolderThroughALink) {
    m_folder.folder("outside");
    m_folder.folder("into/d");
    fs::create_directory_symlink(m_folder / "outside", m_folder / "into/d/e");
    EXPECT_THAT(jstore({"cp", "-r", "--replace", at("d"), at("into")}),
                FailsWith(6, AllOf(StartsWith("jstore: AlreadyExists: " + at("into/d/e")), HasSubstr("link"))));
    EXPECT_EQ(contentOf(m_folder / "into/d/one"), "1");
    EXPECT_TRUE(fs::is_empty(m_folder / "outside"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "into/d/e"));
}

TEST_F(CpFolderTest, WhatTheCommandItselfHasPutThereStaysInFoldersToo) {
    m_folder.file("x/d/f", "from x");
    m_folder.file("x/d/e/deep", "from x");
    m_folder.file("y/d/f", "from y");
    m_folder.file("y/d/e/deep", "from y");
    m_folder.file("y/d/other", "other");
    m_folder.file("old/d/f", "old");
    for (const auto* const target : {"new", "old"}) {
        m_folder.folder(target);
        const auto outcome = jstore({"cp", "-r", "--replace", at("x/d"), at("y/d"), at(target)});
        EXPECT_EQ(outcome.exitCode, 6);
        EXPECT_EQ(outcome.errLines().size(), 2U) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr("AlreadyExists"));
        EXPECT_EQ(contentOf(m_folder / target / "d/f"), "from x");
        EXPECT_EQ(contentOf(m_folder / target / "d/e/deep"), "from x");
        EXPECT_EQ(contentOf(m_folder / target / "d/other"), "other");
    }
}

TEST_F(CpFolderTest, FullStorageEndsTheCopy) {
    for (int i = 0; i < 20; ++i) {
        m_folder.file("d/file" + std::to_string(i));
    }
    const std::vector<std::string> full{"--class-path", JSTORE_TEST_BACKENDS,
                                        "--provider",   "com.corvallen.jstore.test.FaultyProvider",
                                        "--jvm-option", "-Djstore.test.fault=create"};
    const auto copy = [&](std::vector<std::string> words) {
        words.insert(words.begin(), full.begin(), full.end());
        return jstore(words);
    };
    EXPECT_THAT(copy({"cp", "-r", at("d"), at("f")}),
                FailsWith(1, MatchesRegex("jstore: StorageFull: .*; 0 copied before that")));
    EXPECT_THAT(copy({"cp", at("a"), at("d/file1"), at("d/e")}),
                FailsWith(1, MatchesRegex("jstore: StorageFull: .*; 0 copied before that")));
}

TEST_F(CpFolderTest, LinksToFoldersAreToldAndTheRestIsCopied) {
    fs::create_directory_symlink("..", m_folder / "d/e/up");
    fs::create_symlink("one", m_folder / "d/link");
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("f")}), FailsWith(6, HasSubstr("NotSupported: " + at("d/e/up"))));
    EXPECT_EQ(contentOf(m_folder / "f/e/two two"), "22");
    EXPECT_EQ(contentOf(m_folder / "f/link"), "1");
    EXPECT_FALSE(fs::exists(m_folder / "f/e/up"));
}

}  // namespace

}  // namespace jstore::test
