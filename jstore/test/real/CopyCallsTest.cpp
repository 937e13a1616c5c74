#include <fstream>
#include <map>

#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace {

using Counts = std::map<std::string, int>;

/// What a copy asks of a back end. Each call may be a way to another computer, so none is made without need.
class CopyCallsTest : public ::testing::Test {
protected:
    /// The calls that a run makes, by name.
    [[nodiscard]] Counts callsOf(std::vector<std::string> arguments) const {
        const auto file = m_folder / "counts";
        std::vector<std::string> all{"--class-path", JSTORE_TEST_BACKENDS,
                                     "--provider",   "com.corvallen.jstore.test.CountingProvider",
                                     "--jvm-option", "-Djstore.test.counts=" + file.string()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(jstore(all).exitCode, 0);
        Counts counts;
        std::ifstream in(file);
        std::string name;
        for (int count = 0; in >> name >> count;) {
            counts[name] = count;
        }
        return counts;
    }

    /// The calls that copying a folder makes when it holds that many files, and `present` is there before.
    [[nodiscard]] Counts callsOfCopy(int files, std::string_view present) const {
        std::filesystem::remove_all(m_folder / "to");
        m_folder.folder(present);
        for (int i = 0; i < files; ++i) {
            m_folder.file("many/" + std::to_string(i), "content");
        }
        return callsOf({"cp", "-r", "--replace", m_folder.location("many"), m_folder.location("to")});
    }

    /// The calls that one more file in a folder takes.
    [[nodiscard]] Counts callsOfOneFile(std::string_view present) const {
        m_folder.folder("many");
        const auto less = callsOfCopy(1, present);
        auto calls = callsOfCopy(2, present);
        for (const auto& [name, count] : less) {
            calls[name] -= count;
        }
        std::erase_if(calls, [](const auto& call) { return call.second == 0; });
        return calls;
    }

    TemporaryFolder m_folder;
};

const Counts OfOneFile{{"channel.close", 2},      {"channel.read", 2}, {"channel.write", 1},
                       {"createFile", 1},         {"getChannel", 1},   {"getFileAttributes", 2},
                       {"getReadOnlyChannel", 1}, {"moveFile", 1},     {"setLastModified", 1}};

TEST_F(CopyCallsTest, FileInANewFolderIsNotLookedForThere) { EXPECT_EQ(callsOfOneFile("to"), OfOneFile); }

TEST_F(CopyCallsTest, FileInAFolderThatWasThereIsLookedFor) {
    auto expected = OfOneFile;
    expected["fileExists"] = 1;
    expected["folderExists"] = 1;
    EXPECT_EQ(callsOfOneFile("to/many"), expected);
}

TEST_F(CopyCallsTest, WalkAsksOnceForEachFolderWhetherItIsALink) {
    for (const auto* const file : {"d/e/1", "d/e/2", "d/f/1", "d/3"}) {
        m_folder.file(file);
    }
    for (const auto* const verb : {"find", "tree", "du"}) {
        EXPECT_EQ(callsOf({verb, m_folder.location("d")})["getExtendedAttributes"], 2) << verb;
    }
}

}  // namespace

}  // namespace jstore::test
