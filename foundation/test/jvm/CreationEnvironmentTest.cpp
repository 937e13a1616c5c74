#include "jvm/CreationEnvironment.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>

#include "OwnProcess.h"

namespace {

using storage::jvm::detail::CreationEnvironment;
using storage::jvm::detail::EnvironmentLocale;
using storage::jvm::detail::environmentLocale;
using test::inOwnProcess;

void setLocaleVariables(const char* all, const char* text, const char* lang) {
    setenv("LC_ALL", all, 1);
    setenv("LC_CTYPE", text, 1);
    setenv("LANG", lang, 1);
}

TEST(CreationEnvironmentTest, OptionVariablesAreHiddenForTheScope) {
    inOwnProcess([] {
        setenv("JAVA_TOOL_OPTIONS", "-Da", 1);
        setenv("_JAVA_OPTIONS", "-Db", 1);
        setenv("MY_JAVA_TOOL_OPTIONS", "-Dc", 1);
        {
            const CreationEnvironment environment;
            EXPECT_EQ(getenv("JAVA_TOOL_OPTIONS"), nullptr);
            EXPECT_EQ(getenv("_JAVA_OPTIONS"), nullptr);
            EXPECT_STREQ(getenv("MY_JAVA_TOOL_OPTIONS"), "-Dc");
        }
        EXPECT_STREQ(getenv("JAVA_TOOL_OPTIONS"), "-Da");
        EXPECT_STREQ(getenv("_JAVA_OPTIONS"), "-Db");
    });
}

TEST(CreationEnvironmentTest, Utf8LocaleIsLeftAsItIs) {
    inOwnProcess([] {
        setLocaleVariables("", "C.UTF-8", "C");
        const CreationEnvironment environment;
        EXPECT_STREQ(getenv("LC_ALL"), "");
        EXPECT_STREQ(getenv("LC_CTYPE"), "C.UTF-8");
    });
}

TEST(CreationEnvironmentTest, OnlyTheCategoryOfTextChangesWhereItCan) {
    inOwnProcess([] {
        setLocaleVariables("", "C", "C");
        const CreationEnvironment environment;
        EXPECT_STREQ(getenv("LC_CTYPE"), "C.UTF-8");
        EXPECT_STREQ(getenv("LANG"), "C");
        EXPECT_EQ(environmentLocale(), EnvironmentLocale::Utf8);
    });
}

TEST(CreationEnvironmentTest, VariableForAllCategoriesIsOverruled) {
    inOwnProcess([] {
        setLocaleVariables("C", "C", "C");
        {
            const CreationEnvironment environment;
            EXPECT_EQ(environmentLocale(), EnvironmentLocale::Utf8);
        }
        EXPECT_STREQ(getenv("LC_ALL"), "C");
    });
}

TEST(CreationEnvironmentTest, LocaleThatIsNotInstalledIsOverruled) {
    inOwnProcess([] {
        setLocaleVariables("", "C.UTF-8", "C");
        setenv("LC_TIME", "xx_XX.UTF-8", 1);
        ASSERT_EQ(environmentLocale(), EnvironmentLocale::Missing);
        {
            const CreationEnvironment environment;
            EXPECT_EQ(environmentLocale(), EnvironmentLocale::Utf8);
        }
        EXPECT_STREQ(getenv("LC_TIME"), "xx_XX.UTF-8");
    });
}

TEST(CreationEnvironmentTest, ChangeMadeMeanwhileIsKept) {
    inOwnProcess([] {
        setLocaleVariables("C", "C", "C");
        unsetenv("LC_CTYPE");
        setenv("JAVA_TOOL_OPTIONS", "-Da", 1);
        {
            const CreationEnvironment environment;
            setenv("SET_MEANWHILE", "yes", 1);
        }
        EXPECT_STREQ(getenv("SET_MEANWHILE"), "yes");
        EXPECT_STREQ(getenv("LC_ALL"), "C");
        EXPECT_EQ(getenv("LC_CTYPE"), nullptr);
        EXPECT_STREQ(getenv("JAVA_TOOL_OPTIONS"), "-Da");
        EXPECT_EQ(getenv("_JAVA_OPTIONS"), nullptr);
    });
}

TEST(CreationEnvironmentTest, VariableOverwrittenOrRemovedMeanwhileIsKept) {
    inOwnProcess([] {
        setLocaleVariables("C", "C", "C");
        setenv("OVERWRITTEN", "before", 1);
        setenv("REMOVED", "before", 1);
        {
            const CreationEnvironment environment;
            setenv("OVERWRITTEN", "after", 1);
            unsetenv("REMOVED");
        }
        EXPECT_STREQ(getenv("OVERWRITTEN"), "after");
        EXPECT_EQ(getenv("REMOVED"), nullptr);
        EXPECT_STREQ(getenv("LC_ALL"), "C");
    });
}

TEST(CreationEnvironmentTest, EmptyEnvironmentWorks) {
    inOwnProcess([] {
        clearenv();
        {
            const CreationEnvironment environment;
            EXPECT_EQ(environmentLocale(), EnvironmentLocale::Utf8);
        }
        EXPECT_EQ(getenv("LC_CTYPE"), nullptr);
    });
}

}  // namespace
