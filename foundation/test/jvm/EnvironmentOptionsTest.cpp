#include "jvm/EnvironmentOptions.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <stdexcept>

namespace {

using storage::jvm::detail::environmentOptions;
using storage::jvm::detail::splitOptions;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(EnvironmentOptionsTest, BlanksDivideOptions) {
    EXPECT_THAT(splitOptions("  -Da=1\t-Db=2 \n-Dc=3 ", "X"), ElementsAre("-Da=1", "-Db=2", "-Dc=3"));
}

TEST(EnvironmentOptionsTest, NothingGivesNoOption) {
    EXPECT_THAT(splitOptions("", "X"), IsEmpty());
    EXPECT_THAT(splitOptions(" \t ", "X"), IsEmpty());
}

TEST(EnvironmentOptionsTest, QuotesKeepBlanksAndAreDropped) {
    EXPECT_THAT(splitOptions("'-Da=b c' -Dd=\"e f\"g", "X"), ElementsAre("-Da=b c", "-Dd=e fg"));
}

TEST(EnvironmentOptionsTest, OtherQuoteInsideQuotesIsKept) {
    EXPECT_THAT(splitOptions("\"-Da='b\" '-Dc=\"d'", "X"), ElementsAre("-Da='b", "-Dc=\"d"));
}

TEST(EnvironmentOptionsTest, EmptyQuotesAreAnEmptyOption) { EXPECT_THAT(splitOptions("''", "X"), ElementsAre("")); }

TEST(EnvironmentOptionsTest, QuoteWithoutItsMateIsAnError) {
    try {
        static_cast<void>(splitOptions("-Da='b", "SOME_VARIABLE"));
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("SOME_VARIABLE"));
    }
}

TEST(EnvironmentOptionsTest, VariableThatIsNotSetGivesNoOption) {
    unsetenv("SOME_VARIABLE");
    EXPECT_THAT(environmentOptions("SOME_VARIABLE"), IsEmpty());
}

}  // namespace
