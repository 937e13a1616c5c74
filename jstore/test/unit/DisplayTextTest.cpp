#include "base/DisplayText.h"

#include <gmock/gmock.h>

namespace jstore {

namespace {

TEST(DisplayTextTest, ControlCharactersAreNeutralised) {
    EXPECT_EQ("a\xEF\xBF\xBD[2Jb", harmless("a\x1B[2Jb"));
    EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", harmless("\r\n"));
    EXPECT_EQ("\xEF\xBF\xBD", harmless("\xC2\x9B"));        // the C1 control that begins a sequence
    EXPECT_EQ("\xEF\xBF\xBDx", harmless("\xE2\x80\xAEx"));  // right-to-left override
    EXPECT_EQ("\xEF\xBF\xBD", harmless("\xFF"));
}

TEST(DisplayTextTest, WidthIsColumns) {
    EXPECT_EQ(3U, displayWidth("abc"));
    EXPECT_EQ(1U, displayWidth("\xC3\xA9"));
    EXPECT_EQ(1U, displayWidth("e\xCC\x81"));                 // combining
    EXPECT_EQ(4U, displayWidth("\xE6\xBC\xA2\xE5\xAD\x97"));  // wide
    EXPECT_EQ(2U, displayWidth("\xF0\x9F\x9A\x80"));          // emoji
}

TEST(DisplayTextTest, ShortTextStays) { EXPECT_EQ("name.txt", shortened("name.txt", 8)); }

TEST(DisplayTextTest, LongTextKeepsItsEnds) {
    EXPECT_EQ("holi\xE2\x80\xA6jpg", shortened("holiday-in-spring.jpg", 8));
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
