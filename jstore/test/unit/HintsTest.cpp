#include "work/Hints.h"

#include <gmock/gmock.h>

namespace jstore {

using ::testing::HasSubstr;

namespace {

class HintsTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string hint(const char* code, const char* location) const {
        return hintFor({code, location, "", ExitCode::Failed}, m_options);
    }

    Options m_options;
};

TEST_F(HintsTest, UnknownMountIsNamed) {
    EXPECT_THAT(hint("Unavailable", "java://data/x"), HasSubstr("--mount data=URI"));
    EXPECT_THAT(hint("Unavailable", "java://data"), HasSubstr("--mount data=URI"));
}

TEST_F(HintsTest, KnownMountIsForTheDoctor) {
    m_options.mounts = {{"data", "file:///srv"}};
    EXPECT_THAT(hint("Unavailable", "java://data/x"), HasSubstr("jstore doctor"));
}

TEST_F(HintsTest, ReasonIsBetterThanTheDoctor) {
    m_options.mounts = {{"data", "file:///srv"}};
    EXPECT_EQ(hintFor({"Unavailable", "java://data/x", "", ExitCode::Failed, "zip END header not found"}, m_options),
              "");
}

TEST_F(HintsTest, NothingElseHasAHint) {
    EXPECT_EQ(hint("NotFound", "java://data/x"), "");
    EXPECT_EQ(hint("Unavailable", "java:///x"), "");
    m_options.provider = "com.example.Other";
    EXPECT_EQ(hint("Unavailable", "java://data/x"), "");
}

}  // namespace

}  // namespace jstore
