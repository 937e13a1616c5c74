#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>

#include "real/ZipWriter.h"
#include "support/Matchers.h"
#include "support/Moment.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;

namespace {

constexpr const char* Draft = ".storage-archive-a.zip";
constexpr std::size_t SmallFiles = 50;
constexpr std::size_t LargeSize = std::size_t{2} << 20;

unsigned kills() {
    const char* const text = std::getenv("ARCHIVE_KILLS");
    return text == nullptr ? 4 : static_cast<unsigned>(std::stoul(text));
}

/// Copies of a folder into an archive that are ended by a signal at one moment or another.
class KilledArchiveTest : public ::testing::Test {
protected:
    KilledArchiveTest() {
        m_folder.folder("tree");
        for (std::size_t number = 0; number < SmallFiles; ++number) {
            m_folder.file("tree/" + std::to_string(number), "small " + std::to_string(number));
        }
        std::string large(LargeSize, '\0');
        std::generate(large.begin(), large.end(), [this] { return static_cast<char>(m_random()); });
        m_folder.file("tree/large", large);
        m_folder.folder("at");
        restore();
    }

    void restore() const { m_folder.file("at/a.zip", m_old); }

    [[nodiscard]] std::unique_ptr<Jstore> started(const std::string& what = "tree") const {
        auto run = std::make_unique<Jstore>(std::vector<std::string>{
            "--mount", "zip=jar:file://" + (m_folder / "at/a.zip").string(), "cp", "-r", m_folder.location(what),
            "java://zip/copy of " + fs::path(what).filename().string()});
        run->start();
        return run;
    }

    /// What is beside the archive; what has no business there fails the test.
    [[nodiscard]] std::set<std::string> left() const {
        std::set<std::string> names;
        for (const auto& file : fs::directory_iterator(m_folder / "at")) {
            const auto name = file.path().filename().string();
            if (name != "a.zip") {
                EXPECT_TRUE(name == Draft || name == ".storage-spool-a.zip") << name;
                names.insert(name);
            }
        }
        return names;
    }

    [[nodiscard]] bool draftHolds(std::uintmax_t bytes) const {
        std::error_code none;
        const auto size = fs::file_size(m_folder / "at" / Draft, none);
        return !none && size >= bytes;
    }

    [[nodiscard]] bool shell(const std::string& command) const {
        return std::system(("cd '" + (m_folder / "at").string() + "' && " + command).c_str()) == 0;  // NOLINT
    }

    /// Whether the archive is another than the old one. What it is must be sound and hold what was there before.
    [[nodiscard]] bool isNew() const {
        EXPECT_TRUE(shell("unzip -tqq a.zip && unzip -p a.zip 'there before' | grep -qx kept"));
        return contentOf(m_folder / "at/a.zip") != m_old;
    }

    [[nodiscard]] bool isComplete() const {
        return shell("test $(unzip -Z1 a.zip 'copy of tree/?*' | wc -l) = " + std::to_string(SmallFiles + 1));
    }

    /// The next one writes as if nothing had been, and cleans up.
    void expectNextSucceeds() const {
        EXPECT_THAT(started("tree/0")->wait(), IsSilentlyDone());
        EXPECT_TRUE(left().empty());
        EXPECT_TRUE(isNew());
    }

    std::mt19937 m_random{std::random_device()()};
    TemporaryFolder m_folder;
    const std::string m_old = ZipWriter().add("there before", "kept").bytes();
};

TEST_F(KilledArchiveTest, OldOrWholeNewArchiveIsLeftAndOneFileAtMost) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    ASSERT_THAT(started()->wait(), IsSilentlyDone());
    const auto whole = Clock::now() - start;
    ASSERT_TRUE(isNew() && isComplete());
    int hits = 0;
    int replaced = 0;
    for (unsigned kill = 0; kill < kills(); ++kill) {
        restore();
        const auto run = started();
        if (kill % 2 == 0) {
            const auto time = Clock::now() + whole * (m_random() % 1000) / 1000;
            await(*run, [&] { return Clock::now() >= time; });
        } else {  // The end, in which the new archive is written.
            const auto size = 1 + m_random() % (LargeSize + SmallFiles * 200);
            await(*run, [&] { return draftHolds(size); });
        }
        ::kill(run->pid(), kill % 4 < 2 ? SIGKILL : SIGTERM);
        const auto outcome = run->wait();
        const auto beside = left();
        EXPECT_LE(beside.size(), 1U);
        hits += beside.empty() ? 0 : 1;
        const bool isOther = isNew();
        EXPECT_TRUE(!isOther || isComplete() || outcome.signal == 0) << "a signal that ends at once leaves no half";
        replaced += isOther ? 1 : 0;
        expectNextSucceeds();
    }
    std::printf("%u kills: %d left a file, %d archives were replaced\n", kills(), hits, replaced);
}

}  // namespace

}  // namespace jstore::test
