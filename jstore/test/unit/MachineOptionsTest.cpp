#include "java/MachineOptions.h"

#include <gmock/gmock.h>

#include "java/ArchiveChecksum.h"
#include "support/TemporaryFolder.h"

namespace jstore {

using storage::jvm::JavaCandidate;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

TEST(MachineOptionsTest, PreferencesAreApartFromTheUsersOptions) {
    Options options;
    options.jvmOptions = {"-Xmx1g", "-Da=b"};
    options.mounts = {{"data", "file:///srv"}};
    const auto machine = virtualMachineOptions(options, {});
    EXPECT_THAT(machine.defaultOptions,
                ElementsAre("-Xmx128m", "-XX:TieredStopAtLevel=1", "-XX:CompileThresholdScaling=2", "-Xshare:auto",
                            "-XX:+UseSerialGC"));
    EXPECT_THAT(machine.jvmOptions, ElementsAre("-Dstorage.mount.data=file:///srv", "-Xmx1g", "-Da=b"));
    EXPECT_EQ(machine.maxHeapMiB, std::nullopt);
}

class ClassArchiveOptionTest : public ::testing::Test {
protected:
    ClassArchiveOptionTest() { m_options.archives = m_folder.path(); }

    [[nodiscard]] storage::jvm::EmbeddedJVMOptions machine() const {
        return virtualMachineOptions(m_options, {"", m_folder.path(), "", "", "17.0.1"});
    }
    [[nodiscard]] std::vector<std::string> preferred() const { return machine().defaultOptions; }
    [[nodiscard]] std::string used() const {
        return "-XX:SharedArchiveFile=" + (m_folder.path() / "classes-17.0.1.jsa").string();
    }
    std::string checkedFile(const std::string& name) const {
        const auto file = m_folder.file(name, "classes");
        appendChecksum(file);
        return file.string();
    }

    test::TemporaryFolder m_folder;
    Options m_options;
};

TEST_F(ClassArchiveOptionTest, ArchiveIsUsedIfItIsThere) {
    EXPECT_THAT(preferred(), Not(Contains(used())));
    checkedFile("classes-17.0.1.jsa");
    EXPECT_THAT(preferred(), Contains(used()));
    m_options.classPath = {"/usr"};
    EXPECT_THAT(preferred(), Not(Contains(used())));
    m_options.classPath = {};
    m_options.environmentClassPath = "/usr";
    EXPECT_THAT(preferred(), Not(Contains(used())));
}

TEST_F(ClassArchiveOptionTest, ArchiveWithoutAChecksumIsNotUsed) {
    m_folder.file("classes-17.0.1.jsa", "classes");
    EXPECT_THAT(preferred(), Not(Contains(used())));
}

TEST_F(ClassArchiveOptionTest, ArchiveOfAnotherVersionIsLeftAlone) {
    checkedFile("classes-17.0.2.jsa");
    EXPECT_THAT(preferred(), Not(Contains(HasSubstr("SharedArchiveFile"))));
}

TEST_F(ClassArchiveOptionTest, NewArchiveStandsForTheOld) {
    checkedFile("classes-17.0.1.jsa");
    m_options.newArchive = "/new.jsa";
    EXPECT_THAT(preferred(), Not(Contains(used())));
    EXPECT_THAT(machine().jvmOptions, Contains("-XX:ArchiveClassesAtExit=/new.jsa"));
}

TEST(JavaVersionTest, FirstNumberIsTheMajorOne) {
    EXPECT_EQ(storage::jvm::majorVersion("17.0.1"), 17);
    EXPECT_EQ(storage::jvm::majorVersion("1.8.0"), 1);
    EXPECT_EQ(storage::jvm::majorVersion(""), 0);
}

TEST(MachineOptionsTest, HomeAndTheClassPathThatIsThereAreHandedOver) {
    Options options;
    options.classPath = {"/usr:/nonexistent.jar"};
    options.installedJars = "/nonexistent";
    const auto machine = virtualMachineOptions(options, {"JAVA_HOME", "/j", "/j/libjvm.so", ""});
    EXPECT_EQ(machine.java.value().home, "/j");
    EXPECT_THAT(machine.classPath, ElementsAre("/usr"));
}

TEST(MachineOptionsTest, FirstCandidateWithoutAProblemIsUsed) {
    const std::vector<JavaCandidate> candidates{{"JAVA_HOME", "/a", "", "no libjvm"},
                                                {"java on PATH", "/b", "/b/libjvm.so", ""},
                                                {"distribution folder", "/c", "/c/libjvm.so", ""}};
    ASSERT_NE(usable(candidates), nullptr);
    EXPECT_EQ(usable(candidates)->home, "/b");
    EXPECT_EQ(usable({candidates.front()}), nullptr);
    EXPECT_EQ(usable({}), nullptr);
}

TEST(MachineOptionsTest, CandidateIsDescribedInALine) {
    EXPECT_EQ(describe(JavaCandidate{"JAVA_HOME", "/a", "", "no libjvm"}), "JAVA_HOME /a: no libjvm");
    EXPECT_EQ(describe(JavaCandidate{"java on PATH", "", "", "not found"}), "java on PATH: not found");
    EXPECT_EQ(describe(JavaCandidate{"java on PATH", "/b", "/b/libjvm.so", ""}), "java on PATH /b");
}

}  // namespace

}  // namespace jstore
