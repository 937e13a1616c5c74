#include <gmock/gmock.h>
#include <locale.h>

#include <cstdlib>

#include "JavaCalls.h"
#include "OwnProcess.h"
#include "TemporaryFolder.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"

namespace {

using storage::jvm::EmbeddedJVM;
using storage::jvm::JVMWrapper;
using test::inOwnProcess;

/// The variables that say the locale, and the locale that the host has made of them.
struct HostCase {
    const char* name;
    const char* all;   ///< LC_ALL; null: not set
    const char* text;  ///< LC_CTYPE
    const char* lang;  ///< LANG
    const char* hosts;
};

void set(const char* variable, const char* value) {
    if (value == nullptr) {
        unsetenv(variable);
    } else {
        setenv(variable, value, 1);
    }
}

class HostLocaleTest : public testing::TestWithParam<HostCase> {
protected:
    static void enterCase() {
        set("LC_ALL", GetParam().all);
        set("LC_CTYPE", GetParam().text);
        set("LANG", GetParam().lang);
        ASSERT_NE(setlocale(LC_ALL, GetParam().hosts), nullptr);
    }
};

TEST_P(HostLocaleTest, LocaleIsTheHostsAfterwards) {
    inOwnProcess([] {
        enterCase();
        const std::string before = setlocale(LC_ALL, nullptr);
        const auto jvm = EmbeddedJVM::start();
        EXPECT_EQ(setlocale(LC_ALL, nullptr), before);
    });
}

TEST_P(HostLocaleTest, JavaNamesFilesOutsideAscii) {
    inOwnProcess([] {
        enterCase();
        const auto jvm = EmbeddedJVM::start();
        const test::TemporaryFolder folder;
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_EQ(test::createFile(wrapper.getEnv(), folder.path().u16string() + u"/\u00e9\u4e2d\U0001F600.txt"), "");
        EXPECT_TRUE(std::filesystem::exists(folder.path() / "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80.txt"));
    });
}

TEST_P(HostLocaleTest, JavaSpeaksEnglish) {
    inOwnProcess([] {
        enterCase();
        const auto jvm = EmbeddedJVM::start();
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "user.language"), "en");
    });
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, HostLocaleTest,
    testing::Values(HostCase{"Utf8", "C.UTF-8", nullptr, nullptr, "C.UTF-8"},
                    HostCase{"Ascii", "C", nullptr, nullptr, "C"},
                    HostCase{"Utf8ThatTheHostNeverSet", "C.UTF-8", nullptr, nullptr, "C"},
                    HostCase{"AsciiButForTheHost", "C", nullptr, nullptr, "C.UTF-8"},
                    HostCase{"AsciiForTextOnly", nullptr, "C", "C.UTF-8", "C"},
                    HostCase{"AsciiByLanguage", nullptr, nullptr, "C", "C"},
                    HostCase{"NotInstalled", "xx_XX.UTF-8", nullptr, nullptr, "C"},
                    HostCase{"TextNotInstalled", nullptr, "xx_XX.UTF-8", "C.UTF-8", "C"},
                    HostCase{"NotSet", nullptr, nullptr, nullptr, "C"},
                    HostCase{"Mixed", "C", nullptr, nullptr,
                             "LC_CTYPE=C.UTF-8;LC_NUMERIC=C;LC_TIME=C.UTF-8;"
                             "LC_COLLATE=C;LC_MONETARY=C;LC_MESSAGES=C;LC_PAPER=C;LC_NAME=C;LC_ADDRESS=C;"
                             "LC_TELEPHONE=C;LC_MEASUREMENT=C;LC_IDENTIFICATION=C"}),
    [](const auto& host) { return std::string(host.param.name); });

}  // namespace
