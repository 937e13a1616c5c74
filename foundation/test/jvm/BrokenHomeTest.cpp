#include <gmock/gmock.h>
#include <sys/stat.h>

#include <fstream>

#include "CapturedOutput.h"
#include "Homes.h"
#include "OwnProcess.h"
#include "TemporaryFolder.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace {

namespace fs = std::filesystem;
using storage::jvm::EmbeddedJVM;
using storage::jvm::EmbeddedJVMOptions;
using storage::jvm::JavaCandidate;
using test::inOwnProcess;
using testing::AllOf;
using testing::HasSubstr;

/// The first so many bytes of what the file, or the link, leads to.
void cut(const fs::path& file, std::size_t size) {
    std::string bytes(size, '\0');
    std::ifstream(file, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(size));
    fs::remove(file);
    std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(size));
}

void replaceByPipe(const fs::path& file) {
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
}

class BrokenHomeTest : public testing::Test {
protected:
    BrokenHomeTest() { test::makeLinkedHome(m_home); }

    /// The home is a problem that names the file; the start goes on to the next one, and nothing is written.
    void expectPassedOver(const fs::path& file, const std::string& problem) const {
        inOwnProcess([&] {
            EmbeddedJVMOptions options;
            options.javaHome = m_home;
            EXPECT_EQ(storage::jvm::findJava(options).front().problem, (m_home / file).string() + ": " + problem);
            const test::CapturedOutput output;
            const auto jvm = EmbeddedJVM::start(options);
            EXPECT_NE(jvm->getJavaVM(), nullptr);
            EXPECT_NE(jvm->libjvm(), m_home / "lib/server/libjvm.so");
            EXPECT_EQ(output.text(), "");
        });
    }

    const test::TemporaryFolder m_folder;
    const fs::path m_home = m_folder.path() / "java";
};

TEST_F(BrokenHomeTest, WholeHomeIsUsed) {
    inOwnProcess([this] {
        EmbeddedJVMOptions options;
        options.javaHome = m_home;
        EXPECT_EQ(EmbeddedJVM::start(options)->libjvm(), m_home / "lib/server/libjvm.so");
    });
}

TEST_F(BrokenHomeTest, ExactJavaIsUsed) {
    inOwnProcess([this] {
        EmbeddedJVMOptions options;
        options.javaHome = "/nowhere";
        options.java = storage::jvm::javaAt(m_home);
        EXPECT_EQ(EmbeddedJVM::start(options)->libjvm(), m_home / "lib/server/libjvm.so");
    });
}

TEST_F(BrokenHomeTest, ExactJavaIsTheOnlyOneTried) {
    fs::remove(m_home / "lib/modules");
    inOwnProcess([this] {
        EmbeddedJVMOptions options;
        options.java = storage::jvm::javaAt(m_home);
        EXPECT_THAT(storage::jvm::findJava(options), testing::SizeIs(1));
        try {
            static_cast<void>(EmbeddedJVM::start(options));
            ADD_FAILURE() << "it started";
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), "No Java found (given home " + m_home.string() + ": " +
                                        (m_home / "lib/modules").string() + ": no such file)");
        }
    });
}

TEST_F(BrokenHomeTest, HomeWithoutClassesIsPassedOver) {
    fs::remove(m_home / "lib/modules");
    expectPassedOver("lib/modules", "no such file");
}

TEST_F(BrokenHomeTest, HomeWithItsClassesCutShortIsPassedOver) {
    cut(m_home / "lib/modules", 1000);
    expectPassedOver("lib/modules", "cut short");
}

TEST_F(BrokenHomeTest, HomeWithAPipeForItsClassesIsPassedOver) {
    replaceByPipe(m_home / "lib/modules");
    expectPassedOver("lib/modules", "not a file");
}

TEST_F(BrokenHomeTest, HomeWithoutALibraryIsPassedOver) {
    fs::remove(m_home / "lib/libjimage.so");
    expectPassedOver("lib/libjimage.so", "no such file");
    fs::remove(m_home / "lib/libjava.so");
    expectPassedOver("lib/libjava.so", "no such file");
}

TEST_F(BrokenHomeTest, HomeWithALibraryCutShortIsPassedOver) {
    cut(m_home / "lib/libjava.so", 1000);
    expectPassedOver("lib/libjava.so", "cut short");
    cut(m_home / "lib/server/libjvm.so", 1000000);
    expectPassedOver("lib/server/libjvm.so", "cut short");
}

TEST_F(BrokenHomeTest, HomeOfAnotherMachineIsPassedOver) {
    std::fstream library(m_home / "lib/server/libjvm.so", std::ios::binary | std::ios::in | std::ios::out);
    library.seekp(18).put('\x7f').flush();  // the header's field for the kind of processor
    expectPassedOver("lib/server/libjvm.so", "not a library for this machine");
}

TEST_F(BrokenHomeTest, PipeThatStandsForTheVersionIsNotWaitedFor) {
    replaceByPipe(m_home / "release");
    inOwnProcess([this] {
        EmbeddedJVMOptions options;
        options.javaHome = m_home;
        const JavaCandidate found = storage::jvm::findJava(options).front();
        EXPECT_EQ(found.problem, "");
        EXPECT_EQ(found.version, "");
    });
}

// The classes that the machine needs first are zeros: nothing but the start itself can find that.
TEST_F(BrokenHomeTest, DamageThatShowsInTheStartLeavesTheProcessAlive) {
    cut(m_home / "lib/modules", 2000000);
    inOwnProcess([this] {
        EmbeddedJVMOptions options;
        options.javaHome = m_home;
        const test::CapturedOutput output;
        try {
            static_cast<void>(EmbeddedJVM::start(options));
            ADD_FAILURE() << "it started";
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), AllOf(HasSubstr((m_home / "lib/server/libjvm.so").string()),
                                            HasSubstr("tried to end the process")));
        }
        EXPECT_EQ(output.text(), "");
    });
}

}  // namespace
