#include "ArchiveTest.h"

#include <sys/stat.h>

#include <chrono>
#include <fstream>

#include "support/Matchers.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;

namespace {

TEST_F(ArchiveTest, IsMadeAndUsed) {
    EXPECT_THAT(installed({"doctor"}),
                Prints(AllOf(ContainsRegex("warn +archive +.*/lib/jstore/classes-[0-9.]+.jsa: does not exist"),
                             HasSubstr("-> run jstore doctor --make-archive; commands then start faster"))));
    EXPECT_THAT(make(), Prints(AllOf(ContainsRegex("ok +archive +.*jsa: made, [0-9]+ KiB\n"), Uses)));
    EXPECT_EQ(archives().size(), 1U) << "nothing else is left in the folder";
    EXPECT_THAT(installed({"doctor"}), Prints(Uses));
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
}

TEST_F(ArchiveTest, IsReplaced) {
    make();
    std::ofstream(archives().front().string() + ".tmp") << "what a killed maker has left";
    EXPECT_THAT(make(), Prints(AllOf(HasSubstr(": made, "), Uses)));
    EXPECT_EQ(archives().size(), 1U);
}

TEST_F(ArchiveTest, IsForEveryone) {
    EXPECT_EQ(through("umask 077; ", {"doctor", "--make-archive"}).exitCode, 0);
    EXPECT_EQ(fs::status(archives().front()).permissions(), fs::perms(0644));
}

TEST_F(ArchiveTest, FolderMayBeALink) {
    fs::create_directory(m_root / "lib");
    fs::create_directory(m_root / "elsewhere");
    fs::create_directory_symlink(m_root / "elsewhere", folder());
    EXPECT_THAT(make(), Prints(Uses));
}

TEST_F(ArchiveTest, IsPassedOverInSilenceWhenTheJarsAreOthers) {
    make();
    const auto jar = m_root / "share/java/storage-backends.jar";
    fs::last_write_time(jar, fs::last_write_time(jar) - std::chrono::hours(1));
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"doctor"}),
                Prints(ContainsRegex("warn +archive +.*: not used: Java, its options or the jars")));
}

TEST_F(ArchiveTest, IsPassedOverInSilenceWhereTheInstallationWasMoved) {
    make();
    const TemporaryFolder elsewhere;
    fs::copy(m_root.path(), elsewhere.path(), fs::copy_options::recursive);
    EXPECT_THAT(Jstore({"ls", location()}).through(programIn(elsewhere)).run(), Prints("document.txt\n"));
    EXPECT_THAT(Jstore({"doctor"}).through(programIn(elsewhere)).run(),
                Prints(ContainsRegex("warn +archive +.*: not used: Java, its options or the jars")));
}

TEST_F(ArchiveTest, WhatIsNoArchiveIsPassedOverInSilence) {
    make();
    const auto archive = archives().front();
    fs::remove(archive);
    std::ofstream(archive) << "no archive";
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("warn +archive +.*: not used")));
    EXPECT_THAT(make(), Prints(Uses));
}

TEST_F(ArchiveTest, DamagedOneIsPassedOver) {
    make();
    const auto archive = archives().front();
    const auto whole = contentOf(archive);
    for (const auto place : {whole.size() / 4, whole.size() / 2, whole.size() - 100}) {
        auto damaged = whole;
        damaged.replace(place, 64, 64, '\x5a');
        std::ofstream(archive, std::ios::binary) << damaged;
        EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n")) << "damaged at " << place;
    }
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("warn +archive +.*: not used: damaged")));
    EXPECT_THAT(make(), Prints(Uses));
}

TEST_F(ArchiveTest, OneThatHasLostItsEndIsPassedOver) {
    make();
    const auto archive = archives().front();
    for (const std::uintmax_t divisor : {2UL, 20UL}) {
        fs::resize_file(archive, fs::file_size(archive) / divisor);
        EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
    }
    EXPECT_THAT(make(), Prints(Uses));
}

TEST_F(ArchiveTest, PipeInItsPlaceIsPassedOver) {
    make();
    const auto archive = archives().front();
    fs::remove(archive);
    ASSERT_EQ(::mkfifo(archive.c_str(), 0600), 0);
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
}

/// Where an option stands that has Java write an archive in place of a command.
struct DumpCase {
    const char* variable;
    std::string value;
};

TEST_F(ArchiveTest, IsNotOverwrittenByAnOptionOfTheEnvironment) {
    make();
    const auto archive = archives().front();
    const auto before = contentOf(archive);
    const auto file = m_listed.file("options", "-Xshare:dump").string();
    const std::vector<DumpCase> cases{{"JAVA_TOOL_OPTIONS", "-Xshare:dump"},
                                      {"_JAVA_OPTIONS", "-Xshare:dump"},
                                      {"JAVA_TOOL_OPTIONS", "-XX:+DumpSharedSpaces"},
                                      {"_JAVA_OPTIONS", "-XX:VMOptionsFile=" + file},
                                      {"_JAVA_OPTIONS", "-XX:ArchiveClassesAtExit=" + archive.string()}};
    for (const auto& [variable, value] : cases) {
        const auto outcome = Jstore({"ls", location()}).through(programIn(m_root)).with(variable, value).run();
        EXPECT_THAT(outcome,
                    FailsWith(1, AllOf(HasSubstr("Java does not start: "), HasSubstr(variable), HasSubstr("archive"))))
            << value;
        EXPECT_EQ(contentOf(archive), before) << value;
    }
    EXPECT_THAT(installed({"--jvm-option", "-Xshare:dump", "ls", location()}), FailsWith(1, HasSubstr("archive")));
    EXPECT_EQ(contentOf(archive), before);
}

TEST_F(ArchiveTest, IsLeftOutWithAClassPath) {
    make();
    EXPECT_THAT(installed({"--class-path", location(), "ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"--class-path", location(), "doctor"}),
                Prints(ContainsRegex("ok +archive +not used with --class-path or JSTORE_CLASS_PATH\n")));
    EXPECT_THAT(installed({"--class-path", location(), "--jvm-option", "-Xshare:on", "ls", location()}),
                Prints("document.txt\n"))
        << "whoever insists on Java's own archive gets it";
}

TEST_F(ArchiveTest, UsersArchivesWin) {
    make();
    EXPECT_THAT(installed({"--jvm-option", "-XX:SharedArchiveFile=/nonexistent", "doctor"}),
                Prints(ContainsRegex("warn +archive +.*: not used")));
    const auto own = "-XX:ArchiveClassesAtExit=" + (m_listed / "own.jsa").string();
    EXPECT_THAT(installed({"--jvm-option", own, "ls", location()}), Prints("document.txt\n"));
}

}  // namespace

}  // namespace jstore::test
