#include <gtest/gtest.h>

#include "real/FileTree.h"
#include "real/ZipWriter.h"
#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

namespace {

/// Takes an archive of an unkind author apart, in a folder where nothing else may change.
class HostileZipTest : public ::testing::Test {
protected:
    HostileZipTest() {
        m_folder.folder("a/b");
        m_folder.file("a/victim", "untouched");
        m_folder.file("victim", "untouched");
    }

    ~HostileZipTest() override {
        EXPECT_EQ(contentOf(m_folder / "a/victim"), "untouched");
        EXPECT_EQ(contentOf(m_folder / "victim"), "untouched");
        const auto tree = readTree(m_folder.path());
        for (const auto& [name, item] : tree.items) {
            const bool expected = name == "a" || name == "a.zip" || name == "victim" || name == "a/victim" ||
                                  name == "a/b" || name.starts_with("a/b/");
            EXPECT_TRUE(expected) << name << " came out of the archive";
        }
        EXPECT_FALSE(fs::exists("/jstore-test-absolute"));
    }

    void archive(const ZipWriter& writer) const { m_folder.file("a.zip", writer.bytes()); }

    [[nodiscard]] Outcome mounted(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--mount", "zip=jar:file://" + (m_folder / "a.zip").string()});
        return jstore(std::move(arguments));
    }

    [[nodiscard]] Outcome takeOut() const { return mounted({"cp", "-r", "java://zip/", m_folder.location("a/b/out")}); }

    [[nodiscard]] std::string takenOut(const std::string& name) const { return contentOf(m_folder / "a/b/out" / name); }

    TemporaryFolder m_folder;
};

class EscapingNameTest : public HostileZipTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(EscapingNameTest, LeadsNowhereAndIsTold) {
    archive(ZipWriter().add("good", "good content").add(GetParam(), "bad content"));
    const auto outcome = takeOut();
    EXPECT_NE(outcome.exitCode, 0);
    EXPECT_FALSE(outcome.err.empty());
    EXPECT_THAT(outcome.err, HasSubstr("java://zip/"));
}

INSTANTIATE_TEST_SUITE_P(Names, EscapingNameTest,
                         ::testing::Values("../victim", "../../victim", "a/../../victim", "a/../../../victim", "..",
                                           "a/..", "./../victim", "..\\victim", "a\\..\\..\\victim", "C:\\victim",
                                           "\\victim", "/../victim", "//../victim"));

TEST_F(HostileZipTest, AbsoluteNameIsOneInTheArchive) {
    archive(ZipWriter().add("/jstore-test-absolute", "content").add("//two", "slashes"));
    EXPECT_THAT(takeOut(), IsSilentlyDone());
    EXPECT_EQ(takenOut("jstore-test-absolute"), "content");
    EXPECT_EQ(takenOut("two"), "slashes");
}

TEST_F(HostileZipTest, BackslashesAreToldAndTheRestIsCopied) {
    archive(ZipWriter().add("good", "good content").add("a\\b", "content").add("C:\\x", "content").add("C:y", "drive"));
    const auto outcome = takeOut();
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_THAT(outcome.err, HasSubstr("jstore: InvalidLocation: java://zip/a%5Cb"));
    EXPECT_THAT(outcome.err, HasSubstr("jstore: InvalidLocation: java://zip/C:%5Cx"));
    EXPECT_EQ(outcome.errLines().size(), 2U);
    EXPECT_EQ(takenOut("good"), "good content");
    EXPECT_EQ(takenOut("C:y"), "drive");
}

TEST_F(HostileZipTest, NameOfAFileAndAFolderMakesTheArchiveUnavailable) {
    archive(ZipWriter().add("both", "of the file").add("both/below", "below").add("good", "good content"));
    EXPECT_THAT(takeOut(), FailsWith(1, HasSubstr("Unavailable: java://zip/")));
    EXPECT_FALSE(fs::exists(m_folder / "a/b/out"));
}

TEST_F(HostileZipTest, OfTwoFilesOfOneNameTheLastCounts) {
    archive(ZipWriter().add("twice", "first").add("twice", "second").add("good", "good content"));
    EXPECT_THAT(takeOut(), IsSilentlyDone());
    EXPECT_EQ(takenOut("twice"), "second");
}

TEST_F(HostileZipTest, LinkWithSomethingBelowMakesTheArchiveUnavailable) {
    archive(ZipWriter().add("link", "../victim", 0120777).add("link/below", "content"));
    EXPECT_THAT(takeOut(), FailsWith(1, HasSubstr("Unavailable: java://zip/")));
}

TEST_F(HostileZipTest, LinkAloneIsAFileThatHoldsItsTarget) {
    archive(ZipWriter().add("link", "../victim", 0120777));
    EXPECT_THAT(takeOut(), IsSilentlyDone());
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(m_folder / "a/b/out/link")));
    EXPECT_EQ(takenOut("link"), "../victim");
}

TEST_F(HostileZipTest, LocationsLeadNowhereEither) {
    archive(ZipWriter().add("good", "good content"));
    for (const auto* location : {"java://zip/../victim", "java://zip/%2e%2e/victim", "java://zip/..%2Fvictim"}) {
        EXPECT_THAT(mounted({"cat", location}), FailsWith(1, HasSubstr("InvalidLocation"))) << location;
        EXPECT_THAT(mounted({"rm", location}), FailsWith(1, HasSubstr("InvalidLocation"))) << location;
    }
}

}  // namespace

}  // namespace jstore::test
