#include "jvm/JavaSearch.h"

#include <gmock/gmock.h>

#include <fstream>

#include "Homes.h"
#include "TemporaryFolder.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "jvm/Libjvm.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace {

namespace fs = std::filesystem;

using foundation::core::except::detail::AnonymousInternalException;
using storage::jvm::JavaCandidate;
using storage::jvm::detail::searchJava;
using storage::jvm::detail::SearchPlaces;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::SizeIs;

class JavaSearchTest : public testing::Test {
protected:
    JavaSearchTest() { places.distributionFolders = {folder.path() / "jvm"}; }

    /// A Java home as far as a look from outside goes.
    fs::path makeHome(const fs::path& name, const std::string& version) const {
        const fs::path home = folder.path() / name;
        test::makeEmptyHome(home);
        fs::create_directories(home / "bin");
        std::ofstream(home / "bin/java").flush();
        fs::permissions(home / "bin/java", fs::perms::owner_all);
        if (!version.empty()) {
            std::ofstream(home / "release") << "IMPLEMENTOR=\"x\"\nJAVA_VERSION=\"" << version << "\"\n";
        }
        return home;
    }

    [[nodiscard]] std::vector<JavaCandidate> search(const fs::path& given = {}) const {
        return searchJava(given, places);
    }

    test::TemporaryFolder folder;
    SearchPlaces places;
};

auto isAt(const std::string& origin, const fs::path& home) {
    return AllOf(Field(&JavaCandidate::origin, origin), Field(&JavaCandidate::home, home),
                 Field(&JavaCandidate::libjvm, home / "lib/server/libjvm.so"), Field(&JavaCandidate::problem, ""));
}

auto isNothing(const std::string& origin, const std::string& problem) {
    return AllOf(Field(&JavaCandidate::origin, origin), Field(&JavaCandidate::home, fs::path()),
                 Field(&JavaCandidate::libjvm, fs::path()), Field(&JavaCandidate::problem, HasSubstr(problem)));
}

TEST_F(JavaSearchTest, PlacesComeInTheirOrder) {
    const fs::path given = makeHome("given", "21.0.1");
    const fs::path variable = makeHome("variable", "17.0.1");
    const fs::path onPath = makeHome("path", "11.0.1");
    const fs::path distributions = makeHome("jvm/java", "25");
    places.javaHome = variable.string();
    places.path = "/nowhere::" + (onPath / "bin").string();
    EXPECT_THAT(search(given), ElementsAre(isAt("given home", given), isAt("JAVA_HOME", variable),
                                           isAt("java on PATH", onPath), isAt("distribution folder", distributions)));
}

TEST_F(JavaSearchTest, EachPlaceWithoutJavaSaysSo) {
    EXPECT_THAT(search(), ElementsAre(isNothing("JAVA_HOME", "not set"), isNothing("java on PATH", "none found"),
                                      isNothing("distribution folder", (folder.path() / "jvm").string())));
}

TEST_F(JavaSearchTest, HomeThatDoesNotExistIsAProblem) {
    const JavaCandidate given = search("/nowhere").front();
    EXPECT_EQ(given.home, "/nowhere");
    EXPECT_EQ(given.problem, "no such folder");
}

TEST_F(JavaSearchTest, HomeWithoutLibraryIsAProblem) {
    places.javaHome = folder.path().string();
    EXPECT_EQ(search().front().problem, "no lib/server/libjvm.so in it");
}

TEST_F(JavaSearchTest, JavaThatIsTooOldIsAProblem) {
    EXPECT_THAT(search(makeHome("old", "1.8.0_402")).front().problem, HasSubstr("too old"));
    EXPECT_THAT(search(makeHome("ten", "10.0.2")).front().problem, HasSubstr("too old"));
    EXPECT_EQ(search(makeHome("eleven", "11")).front().problem, "");
}

TEST_F(JavaSearchTest, HomeThatDoesNotStateItsVersionIsTried) {
    EXPECT_EQ(search(makeHome("plain", "")).front().problem, "");
}

TEST_F(JavaSearchTest, VersionIsTheHomesOwn) {
    EXPECT_EQ(search(makeHome("given", "21.0.1")).front().version, "21.0.1");
    EXPECT_EQ(search(makeHome("plain", "")).front().version, "");
}

TEST_F(JavaSearchTest, HomeWithoutItsClassesIsAProblem) {
    const fs::path home = makeHome("given", "21");
    fs::remove(home / "lib/modules");
    EXPECT_EQ(search(home).front().problem, (home / "lib/modules").string() + ": no such file");
}

TEST_F(JavaSearchTest, ClassesMayBeInAFolder) {
    const fs::path home = makeHome("given", "21");
    fs::remove(home / "lib/modules");
    fs::create_directories(home / "modules/java.base");
    EXPECT_EQ(search(home).front().problem, "");
}

TEST_F(JavaSearchTest, WhatIsNoLibraryIsAProblem) {
    const fs::path home = makeHome("given", "21");
    std::ofstream(home / "lib/libjava.so") << "no library, but as long as the header of one, or a little longer: text";
    EXPECT_THAT(search(home).front().problem, HasSubstr("libjava.so: not a library for this machine"));
    std::ofstream(home / "lib/libjava.so").flush();
    EXPECT_THAT(search(home).front().problem, HasSubstr("libjava.so: cut short"));
}

TEST_F(JavaSearchTest, WhatIsNoImageIsAProblem) {
    const fs::path home = makeHome("given", "21");
    std::ofstream(home / "lib/modules") << "no image, but as long as the header of one";
    EXPECT_THAT(search(home).front().problem, HasSubstr("lib/modules: not a class image"));
}

TEST_F(JavaSearchTest, LinksOnPathAreResolved) {
    const fs::path home = makeHome("real", "17");
    fs::create_directories(folder.path() / "bin");
    fs::create_symlink(home / "bin/java", folder.path() / "alternative");
    fs::create_symlink(folder.path() / "alternative", folder.path() / "bin/java");
    places.path = (folder.path() / "bin").string();
    EXPECT_THAT(search()[1], isAt("java on PATH", home));
}

TEST_F(JavaSearchTest, FirstExecutableOnPathCounts) {
    const fs::path first = makeHome("first", "11");
    const fs::path second = makeHome("second", "17");
    const fs::path data = makeHome("data", "25");
    fs::permissions(data / "bin/java", fs::perms::owner_read);
    places.path = (data / "bin").string() + ":" + (first / "bin").string() + ":" + (second / "bin").string();
    EXPECT_THAT(search()[1], isAt("java on PATH", first));
}

TEST_F(JavaSearchTest, ScriptThatStandsForJavaIsAProblem) {
    fs::create_directories(folder.path() / "shims");
    std::ofstream(folder.path() / "shims/java").flush();
    fs::permissions(folder.path() / "shims/java", fs::perms::owner_all);
    places.path = (folder.path() / "shims").string();
    EXPECT_THAT(search()[1], isNothing("java on PATH", "is not in the bin folder of a Java home"));
}

TEST_F(JavaSearchTest, NewestJavaOfTheDistributionComesFirst) {
    const fs::path nine = makeHome("jvm/a", "9.0.4");
    const fs::path newest = makeHome("jvm/b", "25.0.3");
    const fs::path older = makeHome("jvm/c", "17.0.9");
    const fs::path newer = makeHome("jvm/d", "17.0.15");
    const fs::path unstated = makeHome("jvm/e", "");
    const auto found = search();
    ASSERT_THAT(found, SizeIs(7));
    EXPECT_EQ(found[2].home, newest);
    EXPECT_EQ(found[3].home, newer);
    EXPECT_EQ(found[4].home, older);
    EXPECT_EQ(found[5].home, nine);
    EXPECT_THAT(found[5].problem, HasSubstr("too old"));
    EXPECT_EQ(found[6].home, unstated);
}

TEST_F(JavaSearchTest, LinksBetweenHomesOfTheDistributionCountOnce) {
    const fs::path home = makeHome("jvm/java-17", "17.0.1");
    fs::create_directory_symlink(home, folder.path() / "jvm/default-java");
    EXPECT_THAT(search(), SizeIs(3));
}

TEST_F(JavaSearchTest, FoldersWithoutAnythingOfJavaAreNoCandidates) {
    fs::create_directories(folder.path() / "jvm/sources");
    std::ofstream(folder.path() / "jvm/note.txt") << "no Java here";
    EXPECT_THAT(search()[2], isNothing("distribution folder", "no Java in"));
}

TEST_F(JavaSearchTest, StartNamesEachPlaceThatWasTried) {
    places.javaHome = "/wrong/home";
    try {
        static_cast<void>(storage::jvm::detail::loadLibjvm(search("/wrong/given")));
        FAIL() << "something was loaded";
    } catch (const AnonymousInternalException<std::runtime_error>& error) {
        EXPECT_THAT(error.what(),
                    AllOf(HasSubstr("given home /wrong/given: no such folder"),
                          HasSubstr("JAVA_HOME /wrong/home: no such folder"), HasSubstr("java on PATH: none found"),
                          HasSubstr("distribution folder: no Java in " + folder.path().string())));
    }
}

TEST_F(JavaSearchTest, LibraryThatCannotBeLoadedIsPassedOver) {
    const std::vector<JavaCandidate> real = storage::jvm::findJava();
    const auto usable = std::ranges::find(real, "", &JavaCandidate::problem);
    ASSERT_NE(usable, real.end()) << "no Java on this machine";
    std::vector<JavaCandidate> candidates = search(makeHome("broken", "17"));
    candidates.push_back(*usable);
    EXPECT_EQ(storage::jvm::detail::loadLibjvm(candidates).path, usable->libjvm);
}

TEST_F(JavaSearchTest, CandidateThatCannotBeLoadedGetsTheLinkersWords) {
    std::vector<JavaCandidate> candidates{storage::jvm::javaAt(makeHome("broken", "17"))};
    EXPECT_EQ(candidates.front().problem, "");
    EXPECT_EQ(storage::jvm::loadJava(candidates), nullptr);
    EXPECT_THAT(candidates.front().problem, HasSubstr("broken/lib/server/libjvm.so: object file has no "));
}

TEST_F(JavaSearchTest, LinkersWordsAreInTheError) {
    try {
        static_cast<void>(storage::jvm::detail::loadLibjvm(search(makeHome("broken", "17"))));
        FAIL() << "an empty library was loaded";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("broken/lib/server/libjvm.so: object file has no "));
    }
}

}  // namespace
