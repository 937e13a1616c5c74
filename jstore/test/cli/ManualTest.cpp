#include "support/Help.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::HasSubstr;

namespace {

std::string unescaped(std::string text) {
    for (auto at = text.find("\\-"); at != std::string::npos; at = text.find("\\-")) {
        text.replace(at, 2, "-");
    }
    return text;
}

class ManualTest : public ::testing::Test {
protected:
    const std::string m_page = unescaped(contentOf(JSTORE_SHARE "/jstore.1"));
};

TEST_F(ManualTest, EveryVerbAndOptionIsThere) {
    ASSERT_GE(verbs().size(), 15U);
    for (const auto& verb : verbs()) {
        const auto section = m_page.find(".SS " + verb + '\n');
        ASSERT_NE(section, std::string::npos) << verb;
        const auto text = m_page.substr(section, m_page.find("\n.S", section + 1) - section);
        for (const auto& option : optionsOf(verb)) {
            EXPECT_THAT(text, HasSubstr("\\fB" + option + "\\fR")) << verb;
        }
    }
    for (const auto& option : optionsOf("")) {
        EXPECT_THAT(m_page, HasSubstr("\\fB" + option + "\\fR"));
    }
}

TEST_F(ManualTest, EveryExitCodeIsThere) {
    const auto codes = allOf(jstore({"--help"}).out, std::regex(R"(\n +([0-9]+)  [a-z])"));
    ASSERT_EQ(codes.size(), 12U);
    for (const auto& code : codes) {
        EXPECT_THAT(m_page, HasSubstr(".TP\n.B " + code + '\n'));
    }
}

TEST_F(ManualTest, FormatterHasNothingToComplainAbout) {
    EXPECT_EQ(std::system("mandoc -Tlint -Wwarning '" JSTORE_SHARE "/jstore.1'"), 0);
}

}  // namespace

}  // namespace jstore::test
