#include "options/Mount.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "base/Problem.h"

namespace jstore {

namespace {

std::string uriOf(const std::string& argument) { return parseMount(argument).uri; }

TEST(MountTest, UriIsKept) {
    const auto mount = parseMount("data=file:///srv/data");
    EXPECT_EQ("data", mount.name);
    EXPECT_EQ("file:///srv/data", mount.uri);
    EXPECT_EQ("jar:file:///a.zip", uriOf("a=jar:file:///a.zip"));
    EXPECT_EQ("jimfs://a=b", uriOf("a=jimfs://a=b"));
}

TEST(MountTest, PathBecomesAFileUri) {
    EXPECT_EQ("file:///srv/data", uriOf("a=/srv/data/"));
    EXPECT_EQ("file:///a%20b/%23%25/gr%C3%BCn", uriOf("a=/a b/#%/gr\xC3\xBCn"));
    EXPECT_EQ("file://" + (std::filesystem::current_path() / "x").string(), uriOf("a=x"));
}

TEST(MountTest, PathMayBeAnyBytes) { EXPECT_EQ("file:///a%20b/gr%FCn%20", uriOf("a=/a b/gr\xFCn ")); }

TEST(MountTest, UriIsMadeAscii) { EXPECT_EQ("file:///gr%C3%BCn/a%20b", uriOf("a=file:///gr\xC3\xBCn/a b")); }

TEST(MountTest, WrongArgumentsAreUsageErrors) {
    for (const auto* const argument :
         {"", "a", "=x", "a=", "a/b=x", "a b=x", "gr\xC3\xBCn=x", "gr\xFCn=x", "a=file:///\xFF"}) {
        try {
            static_cast<void>(parseMount(argument));
            ADD_FAILURE() << argument;
        } catch (const CommandError& error) {
            EXPECT_EQ(ExitCode::Usage, error.problem().exitCode) << argument;
        }
    }
}

TEST(MountTest, LocalTargetIsAPath) {
    EXPECT_EQ("/srv/data", localTarget({"a", "file:///srv/data"}));
    EXPECT_EQ("/srv/a b/100%", localTarget({"a", "file:///srv/a%20b/100%25"}));
    EXPECT_EQ("/srv", localTarget({"a", "file:/srv"}));
    EXPECT_EQ("/srv/a.zip", localTarget({"a", "jar:file:///srv/a.zip!/inside"}));
    EXPECT_EQ(std::nullopt, localTarget({"a", "jimfs://memory"}));
    EXPECT_EQ("/a%zz%4", localTarget({"a", "file:///a%zz%4"}));
}

}  // namespace

}  // namespace jstore
