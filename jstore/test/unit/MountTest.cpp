#include "options/Mount.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "base/Problem.h"

namespace jstore {

namespace {

std::string uriOf(const std::string& argument) { return parseMount(argument).uri; }

TEST(MountTest, UriIsKept) {
    const auto mount = parseMount("data=file:///srv/data");
    EXPECT_EQ(mount.name, "data");
    EXPECT_EQ(mount.uri, "file:///srv/data");
    EXPECT_EQ(uriOf("a=jar:file:///a.zip"), "jar:file:///a.zip");
    EXPECT_EQ(uriOf("a=jimfs://a=b"), "jimfs://a=b");
}

TEST(MountTest, PathBecomesAFileUri) {
    EXPECT_EQ(uriOf("a=/srv/data/"), "file:///srv/data");
    EXPECT_EQ(uriOf("a=/a b/#%/gr\xC3\xBCn"), "file:///a%20b/%23%25/gr%C3%BCn");
    EXPECT_EQ(uriOf("a=x"), "file://" + (std::filesystem::current_path() / "x").string());
}

TEST(MountTest, PathMayBeAnyBytes) { EXPECT_EQ(uriOf("a=/a b/gr\xFCn "), "file:///a%20b/gr%FCn%20"); }

TEST(MountTest, UriIsMadeAscii) { EXPECT_EQ(uriOf("a=file:///gr\xC3\xBCn/a b"), "file:///gr%C3%BCn/a%20b"); }

TEST(MountTest, WrongArgumentsAreUsageErrors) {
    for (const auto* const argument :
         {"", "a", "=x", "a=", "a/b=x", "a b=x", "gr\xC3\xBCn=x", "gr\xFCn=x", "a=file:///\xFF"}) {
        try {
            static_cast<void>(parseMount(argument));
            ADD_FAILURE() << argument;
        } catch (const CommandError& error) {
            EXPECT_EQ(error.problem().exitCode, ExitCode::Usage) << argument;
        }
    }
}

TEST(MountTest, LocalTargetIsAPath) {
    EXPECT_EQ(localTarget({"a", "file:///srv/data"}), "/srv/data");
    EXPECT_EQ(localTarget({"a", "file:///srv/a%20b/100%25"}), "/srv/a b/100%");
    EXPECT_EQ(localTarget({"a", "file:/srv"}), "/srv");
    EXPECT_EQ(localTarget({"a", "jar:file:///srv/a.zip!/inside"}), "/srv/a.zip");
    EXPECT_EQ(localTarget({"a", "jimfs://memory"}), std::nullopt);
    EXPECT_EQ(localTarget({"a", "file:///a%zz%4"}), "/a%zz%4");
}

}  // namespace

}  // namespace jstore
