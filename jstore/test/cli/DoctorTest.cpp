#include <sys/stat.h>

#include <filesystem>

#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

TEST(DoctorTest, WhatWorksIsMarkedOk) {
    const auto outcome = jstore({"doctor"});
    EXPECT_THAT(outcome, Prints(Not(HasSubstr("FAIL"))));
    EXPECT_THAT(outcome.out, AllOf(ContainsRegex("ok +java home +.*used"), ContainsRegex("ok +libjvm +/.*libjvm.so"),
                                   ContainsRegex("ok +java version +[0-9]+\\.")));
    EXPECT_THAT(outcome.out, AllOf(ContainsRegex("ok +class path +.*storage-provider-api.jar"),
                                   ContainsRegex("ok +class +com.corvallen.storage.provider.ProviderException in "),
                                   ContainsRegex("ok +class +com.corvallen.storage.backend.nio.NioProvider in ")));
    EXPECT_THAT(outcome.out,
                AllOf(ContainsRegex("ok +signals +handled by Java: .*SIGSEGV"),
                      ContainsRegex("ok +signals +left to jstore: SIGINT, SIGTERM"),
                      ContainsRegex("ok +locale +.*UTF-8"), ContainsRegex("ok +provider +.*created and disposed of")));
}

TEST(DoctorTest, LocaleIsReplacedForJava) {
    const auto outcome = Jstore({"doctor"}).with("LC_ALL", "C").run();
    EXPECT_THAT(
        outcome,
        Prints(ContainsRegex(
            "ok +locale +the environment asks for ANSI_X3.4-1968; Java uses UTF-8 for file names, set by jstore")));
}

TEST(DoctorTest, NoJavaIsSeven) {
    const auto outcome = jstore({"--java-home", "/nonexistent", "doctor"});
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out,
                AllOf(ContainsRegex("warn +java home +given home /nonexistent: "), ContainsRegex("FAIL +java +"),
                      HasSubstr("-> install"), ContainsRegex("ok +class path")));
}

/// A home whose files look right from outside: each library is this program.
void makeWrongHome(const TemporaryFolder& home) {
    home.folder("lib/server");
    for (const auto* const library : {"lib/server/libjvm.so", "lib/libjava.so", "lib/libjimage.so"}) {
        std::filesystem::create_symlink(JSTORE_PROGRAM, home / library);
    }
    home.file("lib/modules", "\xda\xda\xfe\xca" + std::string(40, '\0'));
}

TEST(DoctorTest, LibraryThatCannotBeLoadedIsSeven) {
    const TemporaryFolder home;
    makeWrongHome(home);
    std::filesystem::remove(home / "lib/server/libjvm.so");
    std::filesystem::copy_file(JSTORE_PROGRAM, home / "lib/server/libjvm.so");
    const auto outcome = jstore({"--java-home", home.path().string(), "doctor"});
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +java +.*libjvm.so cannot be loaded"));
}

TEST(DoctorTest, HomeThatLacksItsClassesIsSeven) {
    const TemporaryFolder home;
    makeWrongHome(home);
    std::filesystem::remove(home / "lib/modules");
    std::filesystem::remove(home / "lib/server/libjvm.so");
    std::filesystem::copy_file(JSTORE_PROGRAM, home / "lib/server/libjvm.so");
    const auto place = home.path().string();
    const auto outcome = jstore({"--java-home", place, "doctor"});
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_THAT(outcome.out, HasSubstr("given home " + place + ": " + place + "/lib/modules: no such file"));
    EXPECT_THAT(jstore({"--java-home", place, "ls", place}),
                FailsWith(7, HasSubstr(place + "/lib/modules: no such file")));
}

TEST(DoctorTest, PipesAreNotWaitedFor) {
    const TemporaryFolder home;
    makeWrongHome(home);
    ASSERT_EQ(::mkfifo((home / "release").c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo((home / "pipe.jar").c_str(), 0600), 0);
    const auto outcome =
        jstore({"--java-home", home.path().string(), "--class-path", (home / "pipe.jar").string(), "doctor"});
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +class path +.*pipe.jar .*neither a folder nor a jar"));
}

TEST(DoctorTest, WrongJavaHomeIsAWarning) {
    const auto outcome = Jstore({"doctor"}).with("JAVA_HOME", "/nonexistent").run();
    EXPECT_THAT(outcome, Prints(ContainsRegex("warn +java home +JAVA_HOME /nonexistent: ")));
}

TEST(DoctorTest, WrongClassPathFails) {
    const TemporaryFolder folder;
    const auto broken = folder.file("broken.jar", "nothing").string();
    const auto outcome = jstore({"--class-path", broken + ":/nonexistent.jar", "doctor"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, AllOf(ContainsRegex("FAIL +class path +.*broken.jar .*not a zip"),
                                   ContainsRegex("FAIL +class path +/nonexistent.jar .*cannot be found"),
                                   HasSubstr("-> correct or remove it in --class-path")));
    EXPECT_THAT(outcome.out, ContainsRegex("ok +provider +.*created and disposed of"));
}

TEST(DoctorTest, WrongProviderFails) {
    const auto outcome = jstore({"--provider", "com.example.Nope", "doctor"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, AllOf(ContainsRegex("FAIL +class +com.example.Nope is not on the class path"),
                                   ContainsRegex("FAIL +provider +cannot use provider com.example.Nope")));
}

TEST(DoctorTest, WrongMachineOptionFails) {
    const auto outcome = jstore({"--jvm-option", "-XX:+NoSuchOption", "doctor"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +java +Java does not start: .*NoSuchOption"));
}

TEST(DoctorTest, MountsAreLookedAt) {
    const TemporaryFolder folder;
    const auto file = folder.file("a.zip");
    const auto good = jstore({"--mount", "a=" + folder.path().string(), "doctor"});
    EXPECT_THAT(good, Prints(ContainsRegex("ok +mount a +file:///")));
    const auto bad = jstore({"--mount", "a=/nonexistent", "--mount", "b=" + file.string(), "doctor"});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_THAT(bad.out, AllOf(ContainsRegex("FAIL +mount a +.*nothing is at /nonexistent"),
                               ContainsRegex("FAIL +mount b +.*not a folder"), HasSubstr("NAME=jar:file:")));
}

TEST(DoctorTest, MountsAreLookedAtWithoutJavaToo) {
    const auto outcome =
        jstore({"--java-home", "/nonexistent", "--mount", "a=/nonexistent", "--mount", "m=jimfs://memory", "doctor"});
    EXPECT_THAT(outcome.out, AllOf(ContainsRegex("FAIL +mount a +.*nothing is at /nonexistent"),
                                   ContainsRegex("ok +mount m +.*not checked")));
}

/// What an operation and the doctor say of a mount that cannot be opened, by the words after it.
void expectSameWords(const std::string& mount, const std::string& words) {
    const auto operation = jstore({"--mount", "m=" + mount, "ls", "java://m/"});
    EXPECT_EQ(operation.exitCode, 1);
    const std::string before = "jstore: Unavailable: java://m/: ";
    ASSERT_EQ(operation.err.substr(0, before.size()), before) << operation.err;
    const auto why = operation.err.substr(before.size());
    EXPECT_THAT(why, HasSubstr(words));
    const auto doctor = jstore({"--mount", "m=" + mount, "doctor"});
    EXPECT_EQ(doctor.exitCode, 1);
    EXPECT_THAT(doctor.out, HasSubstr("FAIL  mount m       " + why));
}

TEST(DoctorTest, FindsWhatAnOperationFinds) {
    const TemporaryFolder folder;
    for (const auto* const name : {"noise.zip", "noise.bin"}) {
        const auto noise = folder.file(name, std::string(100, '?'));
        expectSameWords("jar:file://" + noise.string(), "zip END header not found");
    }
    expectSameWords("jar:file://" + folder.file("empty.zip").string(), "zip file is empty");
    expectSameWords("jimfs://memory", "needs a file-system provider for \"jimfs\"");
}

}  // namespace

}  // namespace jstore::test
