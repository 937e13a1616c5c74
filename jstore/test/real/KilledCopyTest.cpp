#include <algorithm>
#include <chrono>
#include <csignal>
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

constexpr int Moments = 50;
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
    std::size_t during = 0;
    int replaced = 0;
    for (int moment = 0; moment < Moments; ++moment) {
        const auto run = started();
        if (moment % 2 == 0) {
            const auto time = Clock::now() + whole * moment / (Moments - 2);
            await(*run, [&] { return Clock::now() >= time; });
        } else {
            await(*run, [&] { return hiddenHolds(NewSize * static_cast<std::size_t>(moment) / (Moments - 1)); });
        }
        ::kill(run->pid(), SIGKILL);
        static_cast<void>(run->wait());
        const auto left = hidden();
        during += left.size();
        EXPECT_LE(left.size(), 1U);
        for (const auto& file : left) {
            fs::remove(file);
        }
        replaced += targetIsNew() ? 1 : 0;
    }
    std::printf("%zu of %d hit a copy under way, %d came after it\n", during, Moments, replaced);
    EXPECT_GE(during, 10U);
}

TEST_F(KilledCopyTest, HiddenFileThatWasLeftDisturbsNobodyAndIsFoundAndRemoved) {
    const auto run = started();
    await(*run, [&] { return hiddenHolds(1); });
    ::kill(run->pid(), SIGKILL);
    static_cast<void>(run->wait());
    const auto left = hidden();
    ASSERT_EQ(1U, left.size());
    static_cast<void>(targetIsNew());

    EXPECT_THAT(started()->wait(), IsSilentlyDone());
    EXPECT_TRUE(targetIsNew());
    EXPECT_EQ(left, hidden());
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
        EXPECT_EQ(isNew ? 0 : 130, outcome.exitCode) << outcome.err;
        EXPECT_EQ("", outcome.err);
        EXPECT_TRUE(hidden().empty());
        interrupted += isNew ? 0 : 1;
    }
    std::printf("%d of 11 copies were interrupted\n", interrupted);
    EXPECT_GE(interrupted, 3);
}

}  // namespace

}  // namespace jstore::test
