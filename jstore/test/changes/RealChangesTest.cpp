// What other programs do to a real folder, as watchers see it: by the library, and by the program jstore. Each test
// repeats itself CHANGES_RUNS times (5 if it is not set) and prints what it measured.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <string>

#include "changes/Replica.h"
#include "changes/Watcher.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using ::testing::IsEmpty;
using Clock = std::chrono::steady_clock;

namespace {

int runs() {
    const char* const text = std::getenv("CHANGES_RUNS");
    return text == nullptr ? 5 : std::max(1, std::atoi(text));
}

/// A shell command of which nothing fails.
void sh(const std::string& command) { ASSERT_EQ(std::system(("set -e; " + command).c_str()), 0) << command; }

struct WatcherKind {
    const char* name;
    std::unique_ptr<Watcher> (*watch)(const fs::path& folder);
};

class RealChangesTest : public ::testing::TestWithParam<WatcherKind> {
protected:
    RealChangesTest() {
        m_root = m_folder.folder("watched");
        m_source = m_folder.folder("source");
        for (const auto* const part : {"foundation", "docs", "script"}) {
            sh(fmt::format("cp -r '{}/{}' '{}'", CHANGES_SOURCE_TREE, part, m_source.string()));
        }
    }

    /// A repository that holds the source tree.
    [[nodiscard]] std::string repository() const {
        const auto path = m_folder / "repository";
        sh(
            fmt::format("cp -r '{0}' '{1}'; cd '{1}'; git init -q; git add -A; "
                        "git -c user.name=test -c user.email=test@localhost commit -q -m all",
                        m_source.string(), path.string()));
        return path.string();
    }

    void watch() {
        m_watcher = GetParam().watch(m_root);
        m_replica.emplace(listingOf(m_root));
    }

    /// Reads changes until the replica holds what is there, or for half a minute.
    void catchUp() {
        const auto present = listingOf(m_root);
        const auto deadline = Clock::now() + std::chrono::seconds(30);
        while (m_replica->entries() != present && Clock::now() < deadline) {
            for (const auto& change : m_watcher->take(milliseconds(100))) {
                m_replica->apply(change);
                ++m_changes;
            }
        }
    }

    /// Runs the command, and compares the reported changes with the difference of two listings.
    void expectTold(const std::string& command) {
        const auto before = listingOf(m_root);
        // Changes that were reported without reason show here at the latest.
        ASSERT_THAT(difference(m_replica->entries(), before), IsEmpty()) << "before " << command;
        sh(command);
        const auto after = listingOf(m_root);
        catchUp();
        ASSERT_EQ(difference(before, m_replica->entries()), difference(before, after)) << "after " << command;
        ASSERT_THAT(m_replica->complaints(), IsEmpty()) << "after " << command;
        m_paths += difference(before, after).size();
    }

    /// A last change; once it is reported, so is everything before it.
    void settle() {
        expectTold(fmt::format("touch '{}/last'", m_root.string()));
        expectTold(fmt::format("rm '{}/last'", m_root.string()));
    }

    void report(const char* what) const {
        fmt::print("{} by {}: {} runs, {} paths differed, {} changes told\n", what, GetParam().name, runs(), m_paths,
                   m_changes);
    }

    TemporaryFolder m_folder;
    fs::path m_root;
    fs::path m_source;
    std::unique_ptr<Watcher> m_watcher;
    std::optional<Replica> m_replica;
    std::size_t m_changes = 0;
    std::size_t m_paths = 0;
};

TEST_P(RealChangesTest, CopyOfATreeAndItsRemovalAreToldAsTheyAre) {
    watch();
    for (int i = 0; i < runs() && !HasFatalFailure(); ++i) {
        expectTold(fmt::format("cp -r '{}' '{}/copy'", m_source.string(), m_root.string()));
        expectTold(fmt::format("rm -rf '{}/copy'", m_root.string()));
    }
    settle();
    report("cp -r, rm -rf");
}

TEST_P(RealChangesTest, CloneOfARepositoryAndItsRemovalAreToldAsTheyAre) {
    const auto origin = repository();
    watch();
    for (int i = 0; i < runs() && !HasFatalFailure(); ++i) {
        expectTold(fmt::format("git clone -q 'file://{}' '{}/clone'", origin, m_root.string()));
        expectTold(fmt::format("rm -rf '{}/clone'", m_root.string()));
    }
    settle();
    report("git clone, rm -rf");
}

TEST_P(RealChangesTest, ProgramsAtTheSameTimeAreToldAsTheyAre) {
    const auto origin = repository();
    watch();
    for (int i = 0; i < runs() && !HasFatalFailure(); ++i) {
        expectTold(
            fmt::format("cp -r '{0}' '{2}/old'; (rm -rf '{2}/old') & (cp -r '{0}' '{2}/copy') & "
                        "git clone -q 'file://{1}' '{2}/clone'; wait",
                        m_source.string(), origin, m_root.string()));
        expectTold(fmt::format("mv '{0}/clone' '{0}/copy/inside'; mv '{0}/copy' '{0}/renamed'", m_root.string()));
        expectTold(fmt::format("rm -rf '{}/renamed'", m_root.string()));
    }
    settle();
    report("cp -r, git clone and rm -rf at once, mv");
}

TEST_P(RealChangesTest, ChangesWhileTheWatcherIsHeldUpAreMadeUpFor) {
    watch();
    expectTold(fmt::format("mkdir '{}/folder'", m_root.string()));
    m_watcher->hold();
    // Java keeps 512 signals of a folder, and then only that there were more.
    sh(fmt::format("cd '{}/folder'; for i in $(seq 3000); do : > $i; done; rm 1*; mkdir 1; : > 1/x", m_root.string()));
    m_watcher->release();
    catchUp();
    EXPECT_THAT(difference(m_replica->entries(), listingOf(m_root)), IsEmpty());
    EXPECT_THAT(m_replica->complaints(), IsEmpty());
    settle();
}

TEST_P(RealChangesTest, LatencyIsFarBelowAnInterval) {
    watch();
    std::vector<double> latencies;
    for (int i = 0; i < 40 * runs(); ++i) {
        const auto name = std::to_string(i);
        const auto begin = Clock::now();
        std::ofstream(m_root / name).close();
        bool told = false;
        while (!told && Clock::now() - begin < std::chrono::seconds(30)) {
            for (const auto& change : m_watcher->take(milliseconds(100))) {
                if (change.kind == foundation::storage::events::Kind::ChildAdded && change.path == name) {
                    told = true;
                    latencies.push_back(std::chrono::duration<double, std::milli>(change.time - begin).count());
                }
            }
        }
        ASSERT_TRUE(told) << name;
    }
    std::sort(latencies.begin(), latencies.end());
    const auto at = [&](std::size_t percent) { return latencies[(latencies.size() - 1) * percent / 100]; };
    fmt::print("latency by {}: {} changes, median {:.2f} ms, 99th percentile {:.2f} ms, longest {:.2f} ms\n",
               GetParam().name, latencies.size(), at(50), at(99), latencies.back());
    // What is only found by looking once a second would have a median of half a second.
    EXPECT_LT(at(50), 250);
}

INSTANTIATE_TEST_SUITE_P(Watchers, RealChangesTest,
                         ::testing::Values(WatcherKind{"library", &watchByLibrary},
                                           WatcherKind{"jstore", &watchByJstore}),
                         [](const auto& value) { return std::string(value.param.name); });

}  // namespace

}  // namespace jstore::test
