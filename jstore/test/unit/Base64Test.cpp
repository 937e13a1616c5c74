#include "verbs/Base64.h"

#include <gmock/gmock.h>

namespace jstore {

namespace {

TEST(Base64Test, KnownAnswers) {
    EXPECT_EQ("", base64(""));
    EXPECT_EQ("Zg==", base64("f"));
    EXPECT_EQ("Zm8=", base64("fo"));
    EXPECT_EQ("Zm9v", base64("foo"));
    EXPECT_EQ("Zm9vYmFy", base64("foobar"));
    EXPECT_EQ("AP/+", base64(std::string("\0\xFF\xFE", 3)));
}

}  // namespace

}  // namespace jstore
