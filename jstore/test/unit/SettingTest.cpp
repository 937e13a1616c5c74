#include "options/Setting.h"

#include <gtest/gtest.h>

#include "base/Problem.h"

namespace jstore {

namespace {

std::string complaintAbout(const char* argument) {
    try {
        static_cast<void>(parseSetting(argument));
    } catch (const CommandError& error) {
        EXPECT_EQ(error.problem().exitCode, ExitCode::Usage);
        return error.what();
    }
    return "accepted";
}

TEST(SettingTest, ValueIsAllBehindTheFirstEqualsSign) {
    EXPECT_EQ(parseSetting("gds.enableContentCache=true").value, "true");
    EXPECT_EQ(parseSetting("gds.enableContentCache=").value, "");
    EXPECT_EQ(parseSetting("gds.enableContentCache=a=b ").value, "a=b ");
}

TEST(SettingTest, ArgumentWithoutValueIsNamed) {
    EXPECT_EQ(complaintAbout("gds.enableContentCache"), "jstore: --config gds.enableContentCache: expected KEY=VALUE");
    EXPECT_EQ(complaintAbout(""), "jstore: --config : expected KEY=VALUE");
    EXPECT_EQ(complaintAbout("gds.\xFF=x"), "jstore: --config gds.\xEF\xBF\xBD=x: not UTF-8");
}

TEST(SettingTest, KeyThatWouldHaveNoEffectIsNamed) {
    for (const auto* const argument : {"gds.EnableContentCache=true", "=true", "gds=true", "enableContentCache=true"}) {
        EXPECT_EQ(complaintAbout(argument), std::string("jstore: --config ") + argument +
                                                ": unknown setting; the only one is gds.enableContentCache");
    }
}

TEST(SettingTest, DotsSeparateTheLevelsAndTheLastValueCounts) {
    const auto tree = treeOf({{"gds.enableContentCache", "true"}, {"gds.enableContentCache", "false"}});
    EXPECT_EQ(tree.size(), 1U);
    EXPECT_EQ(tree.get_child("gds").get_child("enableContentCache").data(), "false");
    EXPECT_TRUE(treeOf({}).empty());
}

}  // namespace

}  // namespace jstore
