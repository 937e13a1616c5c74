#include "support/Help.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;

namespace {

/// The command lines below "Examples:" in a verb's help.
std::vector<std::string> examplesOf(const std::string& verb) {
    const auto help = jstore({verb, "--help"}).out;
    const auto begin = help.find("Examples:\n");
    return begin == std::string::npos ? std::vector<std::string>()
                                      : allOf(help.substr(begin), std::regex(R"(\n  ([^\n]+))"));
}

/// A folder with what the examples speak of.
void fill(const TemporaryFolder& folder) {
    folder.folder("photos/2025");
    folder.file("photos/lake.jpg", "lake");
    folder.file("photos/2025/hill.jpg", "hill");
    folder.file("report.txt", "report\n");
    folder.folder("backup");
    folder.file("archive.zip", contentOf(JSTORE_TEST_BACKENDS));
}

TEST(ExamplesTest, EveryVerbHasSomeAndTheyWork) {
    ASSERT_GE(verbs().size(), 15U);
    for (const auto& verb : verbs()) {
        const auto examples = examplesOf(verb);
        EXPECT_FALSE(examples.empty()) << verb;
        for (const auto& example : examples) {
            const TemporaryFolder folder;
            const TemporaryFolder output;
            fill(folder);
            const auto command = "cd '" + folder.path().string() + "' && PATH=\"" +
                                 fs::path(programUnderTest()).parent_path().string() + ":$PATH\" bash -c '" +
                                 std::regex_replace(example, std::regex("'"), R"('\'')") + "' >'" +
                                 (output / "out").string() + "' 2>'" + (output / "err").string() + "' </dev/null";
            EXPECT_EQ(std::system(command.c_str()), 0) << example;
            const auto told = contentOf(output / "err");
            EXPECT_EQ(std::regex_replace(told, std::regex("jstore: watching [^\\n]*\\n"), ""), "") << example;
        }
    }
}

}  // namespace

}  // namespace jstore::test
