#include "verbs/Base64.h"

#include <gmock/gmock.h>

namespace jstore {

namespace {

TEST(Base64Test, KnownAnswers) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(base64(std::string("\0\xFF\xFE", 3)), "AP/+");
}

}  // namespace

}  // namespace jstore
