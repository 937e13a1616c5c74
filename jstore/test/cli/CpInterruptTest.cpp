#include <chrono>
#include <csignal>
#include <thread>

#include "CpTest.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace {

/// A copy that takes long: of a file of zeros that takes no room itself.
class CpInterruptTest : public CpTest {
protected:
    CpInterruptTest() {
        m_folder.folder("from");
        m_folder.file("huge", "begins with bytes, which arrive");
        fs::resize_file(m_folder / "huge", std::uintmax_t{64} << 30);
        m_folder.folder("to");
    }

    /// Whether bytes of the huge file have arrived in the folder to which the copy goes: more than a small one has.
    [[nodiscard]] bool hasBegun() const {
        for (const auto& file : fs::recursive_directory_iterator(m_folder / "to")) {
            std::error_code gone;
            const auto size = fs::file_size(file, gone);
            if (!gone && size > std::string_view("whole").size() && file.path().filename() != "old") {
                return true;
            }
        }
        return false;
    }

    /// Starts the copy, interrupts it when bytes have arrived, and waits for its end.
    Outcome interruptedCopy(std::string_view source, std::string_view target) {
        Jstore run({"cp", "-r", "--replace", at(source), at(target)});
        run.start();
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (!hasBegun()) {
            if (std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << "the copy did not begin";
                break;
            }
            std::this_thread::yield();
        }
        ::kill(run.pid(), SIGINT);
        return run.wait();
    }
};

TEST_F(CpInterruptTest, NothingIsLeftOfTheTarget) {
    const auto outcome = interruptedCopy("huge", "to/new");
    EXPECT_THAT(outcome, FailsWith(130, "jstore: interrupted: 0 copied"));
    EXPECT_TRUE(fs::is_empty(m_folder / "to"));
}

TEST_F(CpInterruptTest, FolderHoldsWholeFilesAlone) {
    m_folder.file("from/a", "whole");
    fs::rename(m_folder / "huge", m_folder / "from/huge");
    m_folder.file("from/z");
    EXPECT_THAT(interruptedCopy("from", "to"), FailsWith(130, "jstore: interrupted: 1 copied, 5"));
    EXPECT_EQ(contentOf(m_folder / "to/from/a"), "whole");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder / "to/from"), fs::directory_iterator()), 1);
}

TEST_F(CpInterruptTest, OldContentStays) {
    m_folder.file("to/old", "old content");
    EXPECT_EQ(interruptedCopy("huge", "to/old").exitCode, 130);
    EXPECT_EQ(contentOf(m_folder / "to/old"), "old content");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder / "to"), fs::directory_iterator()), 1);
}

}  // namespace

}  // namespace jstore::test
