#include <gtest/gtest.h>

#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

/// A fault of the back end and what a copy then says.
struct Fault {
    const char* name;
    const char* says;
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

/// Copies over an old file, on a storage with a fault.
class FaultyWriteTest : public ::testing::TestWithParam<Fault> {
protected:
    FaultyWriteTest() {
        for (int i = 0; i < 1'000'000; ++i) {
            m_new += static_cast<char>(i * 31 % 251);
        }
        m_folder.file("new", m_new);
        m_folder.folder("to");
        m_folder.file("to/target", "old content");
    }

    [[nodiscard]] Outcome copy(const std::string& fault, int write = 0) const {
        return jstore({"--class-path", JSTORE_TEST_BACKENDS, "--provider", "com.corvallen.jstore.test.FaultyProvider",
                       "--jvm-option", "-Djstore.test.fault=" + fault, "--jvm-option",
                       "-Djstore.test.write=" + std::to_string(write), "cp", "--replace", m_folder.location("new"),
                       target()});
    }

    [[nodiscard]] std::string target() const { return m_folder.location("to/target"); }

    void expectTheOldFileAlone() const {
        EXPECT_EQ(contentOf(m_folder / "to/target"), "old content");
        EXPECT_EQ(std::distance(fs::directory_iterator(m_folder / "to"), fs::directory_iterator()), 1);
    }

    void expectTheNewFileAlone() const {
        EXPECT_TRUE(m_new == contentOf(m_folder / "to/target"));
        EXPECT_EQ(std::distance(fs::directory_iterator(m_folder / "to"), fs::directory_iterator()), 1);
    }

    std::string m_new;
    TemporaryFolder m_folder;
};

TEST_P(FaultyWriteTest, InAnyWriteLeavesTheOldFile) {
    int write = 1;
    for (; write < 100; ++write) {
        const auto outcome = copy(GetParam().name, write);
        if (outcome.exitCode == 0) {
            break;
        }
        EXPECT_THAT(outcome, FailsWith(1, StartsWith("jstore: " + std::string(GetParam().says)))) << write;
        expectTheOldFileAlone();
    }
    EXPECT_EQ(write, 9) << "a million bytes are eight portions";
    expectTheNewFileAlone();
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultyWriteTest,
                         ::testing::Values(Fault{"fail", "StorageFull"}, Fault{"fail-halfway", "StorageFull"},
                                           Fault{"crash", "Internal"}, Fault{"lose", "Unavailable"},
                                           Fault{"too-much", "Unknown"}));

class FaultyStepTest : public FaultyWriteTest {};

TEST_P(FaultyStepTest, LeavesTheOldFile) {
    EXPECT_THAT(copy(GetParam().name), FailsWith(1, StartsWith("jstore: " + std::string(GetParam().says))));
    expectTheOldFileAlone();
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultyStepTest,
                         ::testing::Values(Fault{"create", "StorageFull"}, Fault{"nothing", "Unavailable"},
                                           Fault{"read", "Unavailable"}, Fault{"close", "StorageFull"},
                                           Fault{"attributes", "StorageFull"},
                                           Fault{"attributes-of-source", "StorageFull"}, Fault{"time", "StorageFull"},
                                           Fault{"move", "StorageFull"}, Fault{"lose", "Unavailable"}));

TEST_F(FaultyWriteTest, ShortWritesArriveWhole) {
    EXPECT_THAT(copy("short"), IsSilentlyDone());
    expectTheNewFileAlone();
}

TEST_F(FaultyWriteTest, ZerosAreWrittenWhereNoneCanBePassedOver) {
    m_new = std::string(900'000, '\0') + m_new + std::string(700'000, '\0');
    m_folder.file("new", m_new);
    EXPECT_THAT(copy("no-position"), IsSilentlyDone());
    expectTheNewFileAlone();
}

TEST_F(FaultyWriteTest, LostBytesAreCounted) {
    const auto outcome = copy("lose", 2);
    EXPECT_THAT(outcome, FailsWith(1, HasSubstr("the storage took")));
}

}  // namespace

}  // namespace jstore::test
