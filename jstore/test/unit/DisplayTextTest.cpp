#include "base/DisplayText.h"

#include <gmock/gmock.h>

namespace jstore {

namespace {

TEST(DisplayTextTest, ControlCharactersAreNeutralised) {
    EXPECT_EQ(harmless("a\x1B[2Jb"), "a\xEF\xBF\xBD[2Jb");
    EXPECT_EQ(harmless("\r\n"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(harmless("\xC2\x9B"), "\xEF\xBF\xBD");        // the C1 control that begins a sequence
    EXPECT_EQ(harmless("\xE2\x80\xAEx"), "\xEF\xBF\xBDx");  // right-to-left override
    EXPECT_EQ(harmless("\xFF"), "\xEF\xBF\xBD");
}

TEST(DisplayTextTest, WidthIsColumns) {
    EXPECT_EQ(displayWidth("abc"), 3U);
    EXPECT_EQ(displayWidth("\xC3\xA9"), 1U);
    EXPECT_EQ(displayWidth("e\xCC\x81"), 1U);                 // combining
    EXPECT_EQ(displayWidth("\xE6\xBC\xA2\xE5\xAD\x97"), 4U);  // wide
    EXPECT_EQ(displayWidth("\xF0\x9F\x9A\x80"), 2U);          // emoji
}

TEST(DisplayTextTest, ShortTextStays) { EXPECT_EQ(shortened("name.txt", 8), "name.txt"); }

TEST(DisplayTextTest, LongTextKeepsItsEnds) {
    EXPECT_EQ(shortened("holiday-in-spring.jpg", 8), "holi\xE2\x80\xA6jpg");
    for (std::size_t columns = 0; columns < 25; ++columns) {
        EXPECT_LE(displayWidth(shortened("holiday-in-spring.jpg", columns)), columns);
        EXPECT_LE(displayWidth(shortened("\xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2", columns)),
                  columns);
        EXPECT_LE(displayWidth(shortened("e\xCC\x81"
                                         "e\xCC\x81"
                                         "e\xCC\x81"
                                         "e\xCC\x81",
                                         columns)),
                  columns);
    }
}

}  // namespace

}  // namespace jstore
