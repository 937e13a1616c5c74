#include "JavaHome.h"

#include <gmock/gmock.h>

#include "JavaVersion.h"
#include "support/TemporaryFolder.h"

namespace jstore {

using storage::jvm::JavaCandidate;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

TEST(JavaHomeTest, UserOptionsComeLast) {
    Options options;
    options.jvmOptions = {"-Xmx1g", "-Da=b"};
    options.mounts = {{"data", "file:///srv"}};
    EXPECT_THAT(virtualMachineOptions(options, {}).jvmOptions,
                ElementsAre("-XX:TieredStopAtLevel=1", "-XX:CompileThresholdScaling=2", "-Xshare:auto",
                            "-XX:+UseSerialGC", "-Dstorage.mount.data=file:///srv", "-Xmx1g", "-Da=b"));
}

TEST(JavaHomeTest, CollectorStepsBackForTheUsers) {
    Options options;
    options.jvmOptions = {"-XX:+UseG1GC"};
    EXPECT_THAT(virtualMachineOptions(options, {}).jvmOptions, Not(Contains("-XX:+UseSerialGC")));
    EXPECT_THAT(virtualMachineOptions(options, {}).jvmOptions, Contains("-XX:+UseG1GC"));
}

class ClassArchiveOptionTest : public ::testing::Test {
protected:
    ClassArchiveOptionTest() {
        m_folder.file("release", "IMPLEMENTOR=\"Some\"\nJAVA_VERSION=\"17.0.1\"\nLIBC=\"gnu\"\n");
        m_options.archives = m_folder.path();
    }

    [[nodiscard]] std::vector<std::string> machineOptions() const {
        return virtualMachineOptions(m_options, {"", m_folder.path(), "", ""}).jvmOptions;
    }
    [[nodiscard]] std::string used() const {
        return "-XX:SharedArchiveFile=" + (m_folder.path() / "classes-17.0.1.jsa").string();
    }

    test::TemporaryFolder m_folder;
    Options m_options;
};

TEST_F(ClassArchiveOptionTest, ArchiveIsUsedIfItIsThere) {
    EXPECT_THAT(machineOptions(), Not(Contains(used())));
    m_folder.file("classes-17.0.1.jsa");
    EXPECT_THAT(machineOptions(), Contains(used()));
    m_options.classPath = {"/usr"};
    EXPECT_THAT(machineOptions(), Not(Contains(used())));
    m_options.classPath = {};
    m_options.environmentClassPath = "/usr";
    EXPECT_THAT(machineOptions(), Not(Contains(used())));
}

TEST_F(ClassArchiveOptionTest, ArchiveOfAnotherVersionIsLeftAlone) {
    m_folder.file("classes-17.0.2.jsa");
    EXPECT_THAT(machineOptions(), Not(Contains(HasSubstr("SharedArchiveFile"))));
}

TEST_F(ClassArchiveOptionTest, ArchiveStepsBackForTheUsers) {
    m_folder.file("classes-17.0.1.jsa");
    for (const auto* const own : {"-XX:SharedArchiveFile=/own.jsa", "-XX:ArchiveClassesAtExit=/own.jsa"}) {
        m_options.jvmOptions = {own};
        EXPECT_THAT(machineOptions(), AllOf(Contains(own), Not(Contains(used()))));
    }
}

TEST_F(ClassArchiveOptionTest, VersionIsTheReleasesOwn) {
    EXPECT_EQ("17.0.1", versionOf(m_folder.path()));
    EXPECT_EQ("", versionOf("/nonexistent"));
    m_folder.file("release", "MODULES=\"java.base\"\n");
    EXPECT_EQ("", versionOf(m_folder.path()));
    EXPECT_EQ(17, majorOf("17.0.1"));
    EXPECT_EQ(1, majorOf("1.8.0"));
    EXPECT_EQ(0, majorOf(""));
}

TEST_F(ClassArchiveOptionTest, NewArchiveStandsForTheOld) {
    m_folder.file("classes-17.0.1.jsa");
    m_options.newArchive = "/new.jsa";
    EXPECT_THAT(machineOptions(), AllOf(Contains("-XX:ArchiveClassesAtExit=/new.jsa"), Not(Contains(used()))));
}

TEST(JavaHomeTest, HomeAndTheClassPathThatIsThereAreHandedOver) {
    Options options;
    options.javaHome = "/j";
    options.classPath = {"/usr:/nonexistent.jar"};
    options.installedJars = "/nonexistent";
    const auto machine = virtualMachineOptions(options, {});
    EXPECT_EQ("/j", machine.javaHome);
    EXPECT_THAT(machine.classPath, ElementsAre("/usr"));
}

TEST(JavaHomeTest, FirstCandidateWithoutAProblemIsUsed) {
    const std::vector<JavaCandidate> candidates{{"JAVA_HOME", "/a", "", "no libjvm"},
                                                {"java on PATH", "/b", "/b/libjvm.so", ""},
                                                {"distribution folder", "/c", "/c/libjvm.so", ""}};
    ASSERT_NE(nullptr, usable(candidates));
    EXPECT_EQ("/b", usable(candidates)->home);
    EXPECT_EQ(nullptr, usable({candidates.front()}));
    EXPECT_EQ(nullptr, usable({}));
}

TEST(JavaHomeTest, CandidateIsDescribedInALine) {
    EXPECT_EQ("JAVA_HOME /a: no libjvm", describe(JavaCandidate{"JAVA_HOME", "/a", "", "no libjvm"}));
    EXPECT_EQ("java on PATH: not found", describe(JavaCandidate{"java on PATH", "", "", "not found"}));
    EXPECT_EQ("java on PATH /b", describe(JavaCandidate{"java on PATH", "/b", "/b/libjvm.so", ""}));
}

}  // namespace

}  // namespace jstore
