// A real tree into a mount and out again: folders of /usr/share with TREE_FILES files together (20000 if it is not
// set).
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>

#include "real/FileTree.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::IsEmpty;

namespace {

std::size_t fewestFiles() {
    const char* const text = std::getenv("TREE_FILES");
    return text == nullptr ? 20'000 : std::stoul(text);
}

constexpr auto Patience = std::chrono::minutes(10);

/// A folder of /usr/share with what is below it.
struct Share {
    fs::path path;
    FileTree tree;

    [[nodiscard]] std::uint64_t averageSize() const {
        std::uint64_t bytes = 0;
        for (const auto& [name, item] : tree.items) {
            bytes += item.isFolder ? 0 : item.size;
        }
        return bytes / tree.files();
    }
};

/// Folders of /usr/share with that many files together, those with small files first: it is their number that counts.
std::vector<Share> manyShares() {
    std::vector<Share> shares;
    for (const auto& entry : fs::directory_iterator("/usr/share")) {
        if (entry.is_directory() && !entry.is_symlink()) {
            Share share{entry.path(), readTree(entry.path())};
            if (share.tree.files() > 0) {
                shares.push_back(std::move(share));
            }
        }
    }
    std::sort(shares.begin(), shares.end(), [](const Share& left, const Share& right) {
        return std::pair(left.averageSize(), left.path) < std::pair(right.averageSize(), right.path);
    });
    const auto fewest = fewestFiles();
    std::size_t files = 0;
    const auto enough = std::find_if(shares.begin(), shares.end(), [&](const Share& share) {
        files += share.tree.files();
        return files >= fewest;
    });
    shares.erase(enough == shares.end() ? enough : std::next(enough), shares.end());
    return shares;
}

class RealTreeTest : public ::testing::Test {
protected:
    /// Copies and prints how long that takes.
    [[nodiscard]] Outcome copy(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--mount", "real=" + (m_folder / "mounted").string(), "cp", "-r"});
        const auto start = std::chrono::steady_clock::now();
        auto outcome = Jstore(std::move(arguments)).within(Patience).run();
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        std::printf("cp -r: %.1f s\n", seconds.count());
        return outcome;
    }

    /// All the shares in one, as they are to be found in a folder that holds them.
    [[nodiscard]] FileTree expected() const {
        FileTree tree;
        for (const auto& share : m_shares) {
            const auto name = share.path.filename().string();
            tree.items[name] = {share.path, /*isFolder=*/true, 0, {}};
            struct stat status {};
            if (::stat(share.path.c_str(), &status) != 0) {
                throw std::runtime_error("gone: " + name);
            }
            tree.items[name].lastModified = status.st_mtim;
            for (const auto& [below, item] : share.tree.items) {
                tree.items[name + '/' + below] = item;
            }
            for (const auto& below : share.tree.passedOver) {
                tree.passedOver.push_back(name + '/' + below);
            }
        }
        return tree;
    }

    TemporaryFolder m_folder;
    std::vector<Share> m_shares = manyShares();
};

TEST_F(RealTreeTest, ComesBackFromAMountByteForByteAndTimeForTime) {
    const auto original = expected();
    ASSERT_GE(original.files(), fewestFiles()) << "/usr/share has too few files for this test";
    std::printf("%zu files and folders, %zu links passed over\n", original.items.size(), original.passedOver.size());
    m_folder.folder("mounted");

    std::vector<std::string> in;
    for (const auto& share : m_shares) {
        in.push_back(share.path.string());
    }
    in.emplace_back("java://real/");
    const auto copiedIn = copy(in);
    EXPECT_EQ(copiedIn.exitCode, original.passedOver.empty() ? 0 : 6);
    EXPECT_EQ(copiedIn.errLines().size(), original.passedOver.size()) << copiedIn.err;
    const auto mounted = readTree(m_folder / "mounted");
    EXPECT_THAT(differences(original, mounted), IsEmpty());

    EXPECT_THAT(copy({"java://real/", (m_folder / "out").string()}), IsSilentlyDone());
    EXPECT_THAT(differences(mounted, readTree(m_folder / "out")), IsEmpty());
}

}  // namespace

}  // namespace jstore::test
