#include "jvm/MachineOptions.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using storage::jvm::EmbeddedJVMOptions;
using storage::jvm::detail::describeVariables;
using storage::jvm::detail::machineOptions;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

using Options = std::vector<std::string>;

/// What a host that wants a quick start prefers.
const Options Preferred{"-Xmx128m",         "-XX:TieredStopAtLevel=1",
                        "-Xshare:auto",     "-XX:SharedArchiveFile=/some.jsa",
                        "-XX:+UseSerialGC", "-Dsome.key=preferred"};

class MachineOptionsTest : public testing::Test {
protected:
    MachineOptionsTest() {
        m_options.defaultOptions = Preferred;
        clearVariables();
    }
    ~MachineOptionsTest() override { clearVariables(); }

    static void clearVariables() {
        unsetenv("JAVA_TOOL_OPTIONS");
        unsetenv("_JAVA_OPTIONS");
    }

    /// Those that the host prefers and gets.
    [[nodiscard]] Options kept() const {
        const Options all = machineOptions(m_options);
        Options found;
        std::ranges::copy_if(Preferred, std::back_inserter(found),
                             [&](const std::string& option) { return std::ranges::find(all, option) != all.end(); });
        return found;
    }
    [[nodiscard]] std::string failure() const {
        try {
            static_cast<void>(machineOptions(m_options));
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    }
    [[nodiscard]] std::string file(const std::string& name, const std::string& content) const {
        const fs::path path = m_folder.path() / name;
        std::ofstream(path) << content;
        return path.string();
    }

    const test::TemporaryFolder m_folder;
    EmbeddedJVMOptions m_options;
};

/// An option, and which of the preferred ones it leaves no place for.
struct Case {
    const char* option;
    Options left;
};

const std::vector<Case> Cases{
    {"-XX:+UseG1GC", {"-XX:+UseSerialGC"}},
    {"-XX:+UseParallelGC", {"-XX:+UseSerialGC"}},
    {"-XX:+UseZGC", {"-XX:+UseSerialGC"}},
    {"-XX:-UseSerialGC", {"-XX:+UseSerialGC"}},
    {"-XX:+UseSerialGC", {}},
    {"-XX:+UseStringDeduplication", {}},
    {"-XX:+AggressiveHeap", {"-Xmx128m", "-XX:+UseSerialGC"}},
    {"-Xmx16m", {"-Xmx128m"}},
    {"-Xmx1g", {"-Xmx128m"}},
    {"-XX:MaxHeapSize=1g", {"-Xmx128m"}},
    {"-XX:MaxRAMPercentage=10", {"-Xmx128m"}},
    {"-Xms512m", {"-Xmx128m"}},
    {"-Xms1G", {"-Xmx128m"}},
    {"-XX:InitialHeapSize=134217729", {"-Xmx128m"}},
    {"-Xms128m", {}},
    {"-Xms16m", {}},
    {"-Xss1m", {}},
    {"-Xshare:off", {"-Xshare:auto", "-XX:SharedArchiveFile=/some.jsa"}},
    {"-Xshare:on", {"-Xshare:auto", "-XX:SharedArchiveFile=/some.jsa"}},
    {"-XX:SharedArchiveFile=/other.jsa", {"-XX:SharedArchiveFile=/some.jsa"}},
    {"-XX:ArchiveClassesAtExit=/other.jsa", {"-XX:SharedArchiveFile=/some.jsa"}},
    {"-XX:+AutoCreateSharedArchive", {"-XX:SharedArchiveFile=/some.jsa"}},
    {"-XX:AOTCache=/other.aot", {"-Xshare:auto", "-XX:SharedArchiveFile=/some.jsa"}},
    {"-XX:AOTMode=record", {"-Xshare:auto", "-XX:SharedArchiveFile=/some.jsa"}},
    {"-XX:TieredStopAtLevel=4", {"-XX:TieredStopAtLevel=1"}},
    {"-XX:-TieredCompilation", {"-XX:TieredStopAtLevel=1"}},
    {"-Xint", {"-XX:TieredStopAtLevel=1"}},
    {"-Xcomp", {"-XX:TieredStopAtLevel=1"}},
    {"-Dsome.key=other", {"-Dsome.key=preferred"}},
    {"-Dsome.key", {"-Dsome.key=preferred"}},
    {"-Dsome.key.below=other", {}},
    {"-agentlib:jdwp=transport=dt_socket,server=y,suspend=n", {}},
    {"-Xcheck:jni", {}},
    {"-ea", {}},
};

TEST_F(MachineOptionsTest, PreferredOptionsGiveWayToOthersThatDecideTheSame) {
    for (const auto& [option, left] : Cases) {
        Options expected;
        std::ranges::copy_if(Preferred, std::back_inserter(expected), [&left = left](const std::string& each) {
            return std::ranges::find(left, each) == left.end();
        });
        for (const char* const variable : {"JAVA_TOOL_OPTIONS", "_JAVA_OPTIONS"}) {
            setenv(variable, option, 1);
            EXPECT_EQ(kept(), expected) << variable << "=" << option;
            EXPECT_THAT(machineOptions(m_options), Contains(option));
            clearVariables();
        }
        m_options.jvmOptions = {option};
        EXPECT_EQ(kept(), expected) << "the host's option " << option;
        m_options.jvmOptions.clear();
    }
}

TEST_F(MachineOptionsTest, LibrarysOwnDefaultsGiveWayToo) {
    m_options.defaultOptions.clear();
    EXPECT_THAT(machineOptions(m_options),
                IsSupersetOf({"-Xrs", "-XX:+DisableAttachMechanism", "-XX:-UsePerfData", "-Xmx512m"}));
    setenv("JAVA_TOOL_OPTIONS", "-XX:-DisableAttachMechanism -XX:+UsePerfData -XX:-ReduceSignalUsage -Xms1g", 1);
    EXPECT_THAT(machineOptions(m_options),
                ElementsAre("-XX:-DisableAttachMechanism", "-XX:+UsePerfData", "-XX:-ReduceSignalUsage", "-Xms1g",
                            "-Djava.class.path=/dev/null"));
}

TEST_F(MachineOptionsTest, StatedHeapIsNoDefault) {
    m_options.maxHeapMiB = 64;
    setenv("JAVA_TOOL_OPTIONS", "-Xmx32m -Xms16m", 1);
    EXPECT_THAT(machineOptions(m_options), AllOf(Contains("-Xmx64m"), Not(Contains("-Xmx128m"))));
    m_options.maxHeapMiB = 0;
    EXPECT_THAT(machineOptions(m_options), AllOf(Contains("-Xmx32m"), Not(Contains("-Xmx128m"))));
}

TEST_F(MachineOptionsTest, OptionsComeInTheirOrder) {
    setenv("JAVA_TOOL_OPTIONS", "-Dfirst", 1);
    setenv("_JAVA_OPTIONS", "-Dlast", 1);
    m_options.defaultOptions = {"-Dpreferred"};
    m_options.jvmOptions = {"-Dhost"};
    EXPECT_THAT(machineOptions(m_options),
                ElementsAre("-Dfirst", "-Xrs", "-XX:+DisableAttachMechanism", "-XX:-UsePerfData", "-Xmx512m",
                            "-Dpreferred", "-Djava.class.path=/dev/null", "-Dhost", "-Dlast"));
}

TEST_F(MachineOptionsTest, FilesOfOptionsAreReadInTheirPlace) {
    const std::string options = file("options", "-XX:+UseG1GC\n'-Dwith=a blank'\n");
    setenv("JAVA_TOOL_OPTIONS", ("-Dbefore -XX:VMOptionsFile=" + options + " -Dafter").c_str(), 1);
    const Options all = machineOptions(m_options);
    EXPECT_THAT(Options(all.begin(), all.begin() + 4),
                ElementsAre("-Dbefore", "-XX:+UseG1GC", "-Dwith=a blank", "-Dafter"));
    EXPECT_THAT(all, Not(Contains("-XX:+UseSerialGC")));
}

TEST_F(MachineOptionsTest, FlagsOfAFileAreReadBeforeTheOptions) {
    const std::string flags = file("flags", "# a remark\n+UseParallelGC  # another\nMaxHeapSize=64m -UsePerfData\n");
    m_options.jvmOptions = {"-Dhost", "-XX:Flags=" + flags};
    const Options all = machineOptions(m_options);
    EXPECT_THAT(Options(all.end() - 4, all.end()),
                ElementsAre("-XX:+UseParallelGC", "-XX:MaxHeapSize=64m", "-XX:-UsePerfData", "-Dhost"));
    EXPECT_THAT(all, AllOf(Not(Contains("-XX:+UseSerialGC")), Not(Contains("-Xmx128m"))));
}

TEST_F(MachineOptionsTest, FileOfOptionsThatCannotBeReadIsNamedWithItsVariable) {
    const std::string pipe = (m_folder.path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    setenv("_JAVA_OPTIONS", ("-XX:VMOptionsFile=" + pipe).c_str(), 1);
    EXPECT_THAT(failure(), AllOf(HasSubstr("_JAVA_OPTIONS"), HasSubstr(pipe + " cannot be read: not a file")));
    setenv("_JAVA_OPTIONS", "-XX:Flags=/nowhere", 1);
    EXPECT_THAT(failure(), AllOf(HasSubstr("_JAVA_OPTIONS"), HasSubstr("/nowhere cannot be read: no such file")));
    setenv("_JAVA_OPTIONS", ("-XX:VMOptionsFile=" + file("nested", "-XX:Flags=/x")).c_str(), 1);
    EXPECT_THAT(failure(), HasSubstr("names another: -XX:Flags=/x"));
}

TEST_F(MachineOptionsTest, ArchiveInPlaceOfAStartIsRefused) {
    const std::string options = file("options", "-Xshare:dump");
    const std::string flags = file("flags", "+DumpSharedSpaces");
    for (const std::string& option :
         {std::string("-Xshare:dump"), std::string("-XX:+DumpSharedSpaces"), std::string("-XX:AOTMode=create"),
          "-XX:VMOptionsFile=" + options, "-XX:Flags=" + flags}) {
        for (const char* const variable : {"JAVA_TOOL_OPTIONS", "_JAVA_OPTIONS"}) {
            setenv(variable, option.c_str(), 1);
            EXPECT_THAT(failure(), AllOf(HasSubstr(variable), HasSubstr("write a class archive"))) << option;
            clearVariables();
        }
        m_options.jvmOptions = {option};
        EXPECT_THAT(failure(), AllOf(HasSubstr("The host's options"), HasSubstr("write a class archive"))) << option;
        m_options.jvmOptions.clear();
    }
}

TEST_F(MachineOptionsTest, ArchiveInUseIsNotOverwritten) {
    const std::string archive = file("classes.jsa", "");
    const std::string other = file("other.jsa", "");
    m_options.defaultOptions = {"-XX:SharedArchiveFile=" + archive};
    fs::create_symlink(archive, m_folder.path() / "link");
    setenv("_JAVA_OPTIONS", ("-XX:ArchiveClassesAtExit=" + (m_folder.path() / "link").string()).c_str(), 1);
    EXPECT_THAT(failure(), AllOf(HasSubstr("_JAVA_OPTIONS: -XX:ArchiveClassesAtExit="), HasSubstr("overwrite")));
    setenv("_JAVA_OPTIONS", ("-XX:ArchiveClassesAtExit=" + other).c_str(), 1);
    EXPECT_EQ(failure(), "none");
}

TEST_F(MachineOptionsTest, PipeOnTheClassPathIsRefused) {
    const fs::path pipe = m_folder.path() / "pipe.jar";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    m_options.classPath = {pipe};
    EXPECT_THAT(failure(), HasSubstr("Neither a folder nor a file on the class path: " + pipe.string()));
}

TEST_F(MachineOptionsTest, VariablesAreDescribedWithTheirValues) {
    EXPECT_EQ(describeVariables(), "");
    setenv("_JAVA_OPTIONS", "-Da=1", 1);
    EXPECT_EQ(describeVariables(), "_JAVA_OPTIONS=-Da=1");
    setenv("JAVA_TOOL_OPTIONS", std::string(1000, 'x').c_str(), 1);
    EXPECT_EQ(describeVariables(), "JAVA_TOOL_OPTIONS=" + std::string(300, 'x') + "…, _JAVA_OPTIONS=-Da=1");
}

}  // namespace
