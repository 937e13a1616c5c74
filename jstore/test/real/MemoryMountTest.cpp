#include <gtest/gtest.h>

#include "real/FileTree.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::IsEmpty;

namespace {

/// A mount in the memory of Java, which is kept in a folder between two runs.
class MemoryMountTest : public ::testing::Test {
protected:
    MemoryMountTest() {
        m_folder.folder("kept");
        m_folder.folder("tree/deep/er");
        m_folder.folder("tree/empty folder");
        m_folder.file("tree/text", "some text");
        m_folder.file(
            "tree/deep/gr\xC3\xBC\xC3\x9F"
            "e \xF0\x9F\x98\x80",
            "greetings");
        m_folder.file("tree/deep/er/large", std::string(3'000'000, 'x') + std::string(1'000'000, '\0') + "end");
    }

    [[nodiscard]] Outcome memory(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(),
                         {"--class-path", JSTORE_TEST_MEMORY, "--provider", "com.corvallen.jstore.test.MemoryProvider",
                          "--jvm-option", "-Djstore.test.memory=" + (m_folder / "kept").string()});
        return jstore(std::move(arguments));
    }

    TemporaryFolder m_folder;
};

TEST_F(MemoryMountTest, TreeIsTheSameInMemoryAndWhenItComesBack) {
    ASSERT_THAT(memory({"cp", "-r", m_folder.location("tree"), "java://memory/tree"}), IsSilentlyDone());
    const auto kept = readTree(m_folder / "kept/tree");
    EXPECT_EQ(kept.files(), 3U);
    EXPECT_THAT(differences(readTree(m_folder / "tree"), kept), IsEmpty());
    ASSERT_THAT(memory({"cp", "-r", "java://memory/tree", m_folder.location("out")}), IsSilentlyDone());
    EXPECT_THAT(differences(kept, readTree(m_folder / "out")), IsEmpty());
}

TEST_F(MemoryMountTest, FileIsReplacedInMemory) {
    m_folder.file("kept/text", "old text, which is longer");
    ASSERT_THAT(memory({"cp", "--replace", m_folder.location("tree/text"), "java://memory/text"}), IsSilentlyDone());
    EXPECT_THAT(memory({"cat", "java://memory/text"}), Prints("some text"));
}

TEST_F(MemoryMountTest, TreeIsCopiedWithinTheMemory) {
    fs::copy(m_folder / "tree", m_folder / "kept/tree", fs::copy_options::recursive);
    ASSERT_THAT(memory({"cp", "-r", "java://memory/tree", "java://memory/copy"}), IsSilentlyDone());
    EXPECT_THAT(differences(readTree(m_folder / "kept/tree"), readTree(m_folder / "kept/copy")), IsEmpty());
}

}  // namespace

}  // namespace jstore::test
