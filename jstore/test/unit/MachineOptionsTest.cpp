#include "java/MachineOptions.h"

#include <gmock/gmock.h>

#include "java/ArchiveSeal.h"
#include "java/JavaVersion.h"
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
    EXPECT_EQ(std::nullopt, machine.maxHeapMiB);
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
    std::string sealedFile(const std::string& name) const {
        const auto file = m_folder.file(name, "classes");
        seal(file);
        return file.string();
    }

    test::TemporaryFolder m_folder;
    Options m_options;
};

TEST_F(ClassArchiveOptionTest, ArchiveIsUsedIfItIsThere) {
    EXPECT_THAT(preferred(), Not(Contains(used())));
    sealedFile("classes-17.0.1.jsa");
    EXPECT_THAT(preferred(), Contains(used()));
    m_options.classPath = {"/usr"};
    EXPECT_THAT(preferred(), Not(Contains(used())));
    m_options.classPath = {};
    m_options.environmentClassPath = "/usr";
    EXPECT_THAT(preferred(), Not(Contains(used())));
}

TEST_F(ClassArchiveOptionTest, ArchiveWithoutASealIsNotUsed) {
    m_folder.file("classes-17.0.1.jsa", "classes");
    EXPECT_THAT(preferred(), Not(Contains(used())));
}

TEST_F(ClassArchiveOptionTest, ArchiveOfAnotherVersionIsLeftAlone) {
    sealedFile("classes-17.0.2.jsa");
    EXPECT_THAT(preferred(), Not(Contains(HasSubstr("SharedArchiveFile"))));
}

TEST_F(ClassArchiveOptionTest, NewArchiveStandsForTheOld) {
    sealedFile("classes-17.0.1.jsa");
    m_options.newArchive = "/new.jsa";
    EXPECT_THAT(preferred(), Not(Contains(used())));
    EXPECT_THAT(machine().jvmOptions, Contains("-XX:ArchiveClassesAtExit=/new.jsa"));
}

TEST(JavaVersionTest, FirstNumberIsTheMajorOne) {
    EXPECT_EQ(17, majorOf("17.0.1"));
    EXPECT_EQ(1, majorOf("1.8.0"));
    EXPECT_EQ(0, majorOf(""));
}

TEST(MachineOptionsTest, HomeAndTheClassPathThatIsThereAreHandedOver) {
    Options options;
    options.javaHome = "/j";
    options.classPath = {"/usr:/nonexistent.jar"};
    options.installedJars = "/nonexistent";
    const auto machine = virtualMachineOptions(options, {});
    EXPECT_EQ("/j", machine.javaHome);
    EXPECT_THAT(machine.classPath, ElementsAre("/usr"));
}

TEST(MachineOptionsTest, FirstCandidateWithoutAProblemIsUsed) {
    const std::vector<JavaCandidate> candidates{{"JAVA_HOME", "/a", "", "no libjvm"},
                                                {"java on PATH", "/b", "/b/libjvm.so", ""},
                                                {"distribution folder", "/c", "/c/libjvm.so", ""}};
    ASSERT_NE(nullptr, usable(candidates));
    EXPECT_EQ("/b", usable(candidates)->home);
    EXPECT_EQ(nullptr, usable({candidates.front()}));
    EXPECT_EQ(nullptr, usable({}));
}

TEST(MachineOptionsTest, CandidateIsDescribedInALine) {
    EXPECT_EQ("JAVA_HOME /a: no libjvm", describe(JavaCandidate{"JAVA_HOME", "/a", "", "no libjvm"}));
    EXPECT_EQ("java on PATH: not found", describe(JavaCandidate{"java on PATH", "", "", "not found"}));
    EXPECT_EQ("java on PATH /b", describe(JavaCandidate{"java on PATH", "/b", "/b/libjvm.so", ""}));
}

}  // namespace

}  // namespace jstore
