#include "options/Setting.h"

#include <gtest/gtest.h>

#include "base/Problem.h"

namespace jstore {

namespace {

std::string complaintAbout(const char* argument) {
    try {
        static_cast<void>(parseSetting(argument));
    } catch (const CommandError& error) {
        EXPECT_EQ(ExitCode::Usage, error.problem().exitCode);
        return error.what();
    }
    return "accepted";
}

TEST(SettingTest, ValueIsAllBehindTheFirstEqualsSign) {
    EXPECT_EQ("true", parseSetting("gds.enableContentCache=true").value);
    EXPECT_EQ("", parseSetting("gds.enableContentCache=").value);
    EXPECT_EQ("a=b ", parseSetting("gds.enableContentCache=a=b ").value);
}

TEST(SettingTest, ArgumentWithoutValueIsNamed) {
    EXPECT_EQ("jstore: --config gds.enableContentCache: expected KEY=VALUE", complaintAbout("gds.enableContentCache"));
    EXPECT_EQ("jstore: --config : expected KEY=VALUE", complaintAbout(""));
    EXPECT_EQ("jstore: --config gds.\xEF\xBF\xBD=x: not UTF-8", complaintAbout("gds.\xFF=x"));
}

TEST(SettingTest, KeyThatWouldHaveNoEffectIsNamed) {
    for (const auto* const argument : {"gds.EnableContentCache=true", "=true", "gds=true", "enableContentCache=true"}) {
        EXPECT_EQ(
            std::string("jstore: --config ") + argument + ": there is no such setting; there is gds.enableContentCache",
            complaintAbout(argument));
    }
}

TEST(SettingTest, DotsSeparateTheLevelsAndTheLastValueCounts) {
    const auto tree = treeOf({{"gds.enableContentCache", "true"}, {"gds.enableContentCache", "false"}});
    EXPECT_EQ(1U, tree.size());
    EXPECT_EQ("false", tree.get_child("gds").get_child("enableContentCache").data());
    EXPECT_TRUE(treeOf({}).empty());
}

}  // namespace

}  // namespace jstore
