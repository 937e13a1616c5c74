// Hosts in a locale that knows nothing beyond ASCII.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <clocale>
#include <string>

#include "data/Listing.h"
#include "hosts/HostProcess.h"

namespace storage::javaprovider::test {
namespace {

namespace fs = std::filesystem;

class LocaleTest : public ::testing::TestWithParam<const char*> {};

TEST_P(LocaleTest, NamesOutsideAsciiWork) {
    expectSilentExit([](const fs::path& data) {
        setenv("LC_ALL", GetParam(), 1);
        const auto provider = makeProvider(startMachine());
        for (const char16_t* name : {u"Größe", u"文件", u"Ω €", u"\U0001F600"}) {
            expectWorks(*provider, data, name);
        }
        provider->createFolder(in(data, u"Größe"));
        provider->createFile(in(data, u"Größe").getChild(u"文件"));
        EXPECT_TRUE(fs::exists(data / "Größe" / "文件"));
        const auto children = childrenOf(provider->listAll(in(data, u"Größe")));
        ASSERT_EQ(children.size(), 1U);
        EXPECT_EQ(children.front().first, u"文件");
        EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C") << "the host's own locale";
    });
}

INSTANTIATE_TEST_SUITE_P(Is, LocaleTest, ::testing::Values("C", "POSIX"), [](const auto& each) { return each.param; });

}  // namespace
}  // namespace storage::javaprovider::test
