#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <regex>

#include "support/Matchers.h"
#include "support/Moment.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

namespace {

using Clock = std::chrono::steady_clock;

/// How often a test kills a copy: KILLS in the environment, which is for long runs.
int moments(int usually) {
    const char* const wanted = std::getenv("KILLS");
    return wanted == nullptr ? usually : std::max(std::atoi(wanted), 4);
}

constexpr std::size_t NewSize = std::size_t{48} << 20;

/// Bytes that no two places share, and no zeros in a row.
std::string noise(std::size_t size) {
    std::mt19937_64 random(size);  // NOLINT: the same in each run
    std::string bytes(size, '\0');
    for (std::size_t at = 0; at + 8 <= size; at += 8) {
        const auto number = random();
        std::copy_n(reinterpret_cast<const char*>(&number), 8, bytes.data() + at);
    }
    return bytes;
}

/// Copies of a large file over a small one that are ended by a signal at one moment or another.
class KilledCopyTest : public ::testing::Test {
protected:
    KilledCopyTest() {
        m_folder.file("new", m_new);
        m_folder.folder("to");
        restore();
    }

    void restore() const { m_folder.file("to/target", m_old); }

    [[nodiscard]] std::unique_ptr<Jstore> started() const {
        auto run = std::make_unique<Jstore>(
            std::vector<std::string>{"cp", "--replace", m_folder.location("new"), m_folder.location("to/target")});
        run->start();
        return run;
    }

    /// Hidden files beside the target; what is neither fails the test.
    [[nodiscard]] std::vector<fs::path> hidden() const {
        static const std::regex shape(R"(\.target\.[0-9a-f]+-[0-9a-f]{16}\.tmp)");
        std::vector<fs::path> files;
        for (const auto& file : fs::directory_iterator(m_folder / "to")) {
            if (file.path().filename() != "target") {
                EXPECT_TRUE(std::regex_match(file.path().filename().string(), shape)) << file.path();
                files.push_back(file.path());
            }
        }
        return files;
    }

    [[nodiscard]] bool hiddenHolds(std::uintmax_t bytes) const {
        for (const auto& file : fs::directory_iterator(m_folder / "to")) {
            std::error_code gone;
            const auto size = fs::file_size(file, gone);
            if (!gone && file.path().filename() != "target" && size >= bytes) {
                return true;
            }
        }
        return false;
    }

    /// How many files the copy of a folder holds under their own names; one that is not whole, and a second hidden one,
    /// fails the test. Files may come and go while it counts.
    [[nodiscard]] std::size_t wholeFiles(std::string_view copy) const {
        std::size_t whole = 0;
        std::size_t hiddenFiles = 0;
        std::error_code gone;
        for (fs::recursive_directory_iterator file(m_folder / copy, gone), end; file != end; file.increment(gone)) {
            const bool isHidden = file->path().filename().string().starts_with('.');
            hiddenFiles += isHidden ? 1U : 0U;
            if (!isHidden && file->is_regular_file(gone)) {
                EXPECT_EQ(fs::file_size(file->path(), gone), m_old.size()) << file->path();
                ++whole;
            }
        }
        EXPECT_LE(hiddenFiles, 1U);
        return whole;
    }

    void expectContents(std::string_view copy) const {
        std::error_code gone;
        for (fs::recursive_directory_iterator file(m_folder / copy, gone), end; file != end; file.increment(gone)) {
            if (file->is_regular_file() && !file->path().filename().string().starts_with('.')) {
                EXPECT_TRUE(m_old == contentOf(file->path())) << file->path();
            }
        }
    }

    /// The content of the target, which is one of the two. Puts the old one back.
    [[nodiscard]] bool targetIsNew() const {
        const auto content = contentOf(m_folder / "to/target");
        EXPECT_TRUE(content == m_old || content == m_new) << content.size() << " bytes";
        const bool isNew = content == m_new;
        if (isNew) {
            restore();
        }
        return isNew;
    }

    /// How long a copy takes that nobody disturbs.
    [[nodiscard]] Clock::duration duration() const {
        const auto start = Clock::now();
        EXPECT_THAT(started()->wait(), IsSilentlyDone());
        const auto took = Clock::now() - start;
        EXPECT_TRUE(targetIsNew());
        return took;
    }

    TemporaryFolder m_folder;
    const std::string m_new = noise(NewSize);
    const std::string m_old = noise(100'000);
};

TEST_F(KilledCopyTest, FiftyMomentsOfKillingLeaveTheOldFileOrTheWholeNewOne) {
    const auto whole = duration();
    const int count = moments(50);
    int during = 0;
    int replaced = 0;
    for (int moment = 0; moment < count; ++moment) {
        const auto run = started();
        if (moment % 2 == 0) {
            const auto time = Clock::now() + whole * moment / (count - 2);
            await(*run, [&] { return Clock::now() >= time; });
        } else {
            const auto size = NewSize * static_cast<std::size_t>(moment) / static_cast<std::size_t>(count - 1);
            await(*run, [&] { return hiddenHolds(size); });
        }
        ::kill(run->pid(), SIGKILL);
        static_cast<void>(run->wait());
        const auto left = hidden();
        during += static_cast<int>(left.size());
        EXPECT_LE(left.size(), 1U);
        for (const auto& file : left) {
            fs::remove(file);
        }
        replaced += targetIsNew() ? 1 : 0;
    }
    std::printf("%d of %d hit a copy under way, %d came after it\n", during, count, replaced);
    EXPECT_GE(during, count / 5);
}

/// Each file of a folder that was copied in part is whole; one hidden file at most has no place yet.
TEST_F(KilledCopyTest, KilledCopyOfAFolderLeavesWholeFilesAlone) {
    constexpr std::size_t files = 300;
    for (std::size_t file = 0; file < files; ++file) {
        m_folder.file("tree/d" + std::to_string(file % 7) + "/f" + std::to_string(file), m_old);
    }
    int during = 0;
    const int count = moments(8);
    for (int moment = 0; moment < count; ++moment) {
        Jstore run({"cp", "-r", m_folder.location("tree"), m_folder.location("to/tree")});
        run.start();
        const auto wanted = files * static_cast<std::size_t>(moment) / static_cast<std::size_t>(count - 1);
        await(run, [&] { return wholeFiles("to/tree") >= wanted; });
        ::kill(run.pid(), SIGKILL);
        static_cast<void>(run.wait());
        during += wholeFiles("to/tree") < files ? 1 : 0;
        expectContents("to/tree");
        fs::remove_all(m_folder / "to/tree");
    }
    std::printf("%d of %d hit a copy under way\n", during, count);
    EXPECT_GE(during, count / 4);
}

TEST_F(KilledCopyTest, HiddenFileThatWasLeftDisturbsNobodyAndIsFoundAndRemoved) {
    const auto run = started();
    await(*run, [&] { return hiddenHolds(1); });
    ::kill(run->pid(), SIGKILL);
    static_cast<void>(run->wait());
    const auto left = hidden();
    ASSERT_EQ(left.size(), 1U);
    static_cast<void>(targetIsNew());

    EXPECT_THAT(started()->wait(), IsSilentlyDone());
    EXPECT_TRUE(targetIsNew());
    EXPECT_EQ(hidden(), left);
    const auto location = m_folder.location("to/" + left.front().filename().string());
    EXPECT_THAT(jstore({"find", "--name", ".*-????????????????.tmp", m_folder.location("to")}),
                Prints(location + '\n'));
    EXPECT_THAT(jstore({"rm", location}), IsSilentlyDone());
    EXPECT_TRUE(hidden().empty());
}

TEST_F(KilledCopyTest, InterruptsLeaveNothingBehind) {
    int interrupted = 0;
    for (std::size_t moment = 0; moment <= 10; ++moment) {
        const auto run = started();
        await(*run, [&] { return hiddenHolds(NewSize * moment / 10); });
        ::kill(run->pid(), SIGINT);
        const auto outcome = run->wait();
        const bool isNew = targetIsNew();
        EXPECT_EQ(outcome.exitCode, isNew ? 0 : 130) << outcome.err;
        EXPECT_EQ(outcome.err, isNew ? "" : "jstore: interrupted: 0 copied\n");
        EXPECT_TRUE(hidden().empty());
        interrupted += isNew ? 0 : 1;
    }
    std::printf("%d of 11 copies were interrupted\n", interrupted);
    EXPECT_GE(interrupted, 3);
}

}  // namespace

}  // namespace jstore::test
