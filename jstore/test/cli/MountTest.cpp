#include "support/FolderTest.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

class MountTest : public FolderTest {};

TEST_F(MountTest, PathIsMounted) {
    const auto target = m_folder.folder("with blank \xF0\x9F\x98\x80 100%");
    EXPECT_THAT(jstore({"--mount", "data=" + target.string(), "touch", "java://data/x"}), IsSilentlyDone());
    EXPECT_TRUE(fs::exists(target / "x"));
}

TEST_F(MountTest, UriIsMounted) {
    EXPECT_THAT(jstore({"--mount", "data=file://" + m_folder.path().string(), "mkdir", "java://data/x"}),
                IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / "x"));
}

TEST_F(MountTest, SeveralMountsWorkTogether) {
    m_folder.folder("a");
    m_folder.folder("b");
    m_folder.file("a/x", "content");
    EXPECT_THAT(jstore({"--mount", "a=" + (m_folder / "a").string(), "--mount", "b=" + (m_folder / "b").string(), "mv",
                        "java://a/x", "java://b/y"}),
                IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "b/y"), "content");
}

TEST_F(MountTest, ArchiveIsMounted) {
    const auto archive = m_folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    const auto mount = "zip=jar:file://" + archive.string();
    EXPECT_THAT(jstore({"--mount", mount, "exists", "java://zip/META-INF"}), Prints("folder\n"));
    EXPECT_THAT(jstore({"--mount", mount, "touch", "java://zip/new"}), IsSilentlyDone());
    EXPECT_THAT(jstore({"--mount", mount, "exists", "java://zip/new"}), Prints("file\n"));
}

TEST_F(MountTest, UnknownMountIsExplained) {
    EXPECT_THAT(
        jstore({"exists", "java://nowhere/x"}),
        FailsWith(1, AllOf(StartsWith("jstore: Unavailable: java://nowhere/x: "), HasSubstr("--mount nowhere=URI"))));
}

TEST_F(MountTest, MountWithoutTargetIsExplained) {
    EXPECT_THAT(jstore({"--mount", "a=" + (m_folder / "none").string(), "exists", "java://a/x"}),
                FailsWith(1, AllOf(StartsWith("jstore: Unavailable: java://a/x: storage.mount.a=file:///"),
                                   EndsWith("/none is not a folder"))));
}

class JailTest : public MountTest {
protected:
    JailTest() {
        m_folder.folder("jail");
        m_folder.folder("outer");
        m_folder.file("outer/kept");
        fs::create_symlink(m_folder / "outer", m_folder / "jail/relative");
        fs::create_symlink(m_folder / "outer/new", m_folder / "jail/dangling");
    }
    ~JailTest() override {
        EXPECT_TRUE(fs::exists(m_folder / "outer/kept"));
        EXPECT_FALSE(fs::exists(m_folder / "outer/new"));
    }

    [[nodiscard]] Outcome inJail(const std::string& verb, const std::string& location) const {
        return jstore({"--mount", "jail=" + (m_folder / "jail").string(), verb, location});
    }
};

TEST_F(JailTest, ParentNamesLeadNowhere) {
    for (const auto* location : {"java://jail/../outer/kept", "java://jail/%2e%2e/outer/kept",
                                 "java://jail/%2E./outer/kept", "java://jail/x/../../outer/kept"}) {
        EXPECT_THAT(inJail("rm", location), FailsWith(1, StartsWith("jstore: InvalidLocation: "))) << location;
    }
}

TEST_F(JailTest, EncodedSlashIsNoSeparator) {
    for (const auto* location : {"java://jail/..%2Fouter%2Fkept", "java://jail/..%2fouter", "java://jail/%2Fetc"}) {
        EXPECT_THAT(inJail("rm", location), FailsWith(1, StartsWith("jstore: InvalidLocation: "))) << location;
    }
}

TEST_F(JailTest, LinksLeadNowhere) {
    EXPECT_THAT(inJail("rm", "java://jail/relative/kept"), FailsWith(5, StartsWith("jstore: AccessDenied: ")));
    EXPECT_THAT(inJail("touch", "java://jail/relative/new"), FailsWith(5, StartsWith("jstore: AccessDenied: ")));
    EXPECT_THAT(inJail("touch", "java://jail/dangling"), FailsWith(5, StartsWith("jstore: AccessDenied: ")));
    EXPECT_THAT(inJail("mkdir", "java://jail/relative/new"), FailsWith(5, StartsWith("jstore: AccessDenied: ")));
}

TEST_F(JailTest, RootIsNotRemoved) {
    EXPECT_THAT(inJail("rm", "java://jail/"), FailsWith(5, StartsWith("jstore: AccessDenied: ")));
}

}  // namespace

}  // namespace jstore::test
