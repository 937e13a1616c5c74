#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using nlohmann::json;

namespace {

TEST(FeaturesTest, EachIsALine) {
    EXPECT_THAT(jstore({"features"}), Prints("RecursiveFolderRemoval                 yes\n"
                                             "AtomicCopy                             no\n"
                                             "TransactionalStreams                   no\n"
                                             "RecursiveChangeEvents                  yes\n"
                                             "WritableFlag                           no\n"
                                             "CanonicalLocations                     no\n"
                                             "AllowsMovesAndDeletesWhenOpen          yes\n"
                                             "AllowsMovesAndDeletesWhenOpenReadOnly  yes\n"));
}

TEST(FeaturesTest, MountsCount) {
    const TemporaryFolder folder;
    const auto archive = folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    const auto outcome = jstore({"--json", "--mount", "zip=jar:file://" + archive.string(), "features"});
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(8U, objects.size());
    EXPECT_EQ(
        json({{"verb", "features"}, {"feature", "AllowsMovesAndDeletesWhenOpen"}, {"supported", false}, {"ok", true}}),
        objects[6]);
}

TEST(FeaturesTest, LocationHasToBeThere) {
    const TemporaryFolder folder;
    const auto objects = objectsOf(jstore({"--json", "features", folder.location("")}));
    ASSERT_EQ(8U, objects.size());
    EXPECT_EQ(folder.location(""), objects[0]["location"]);
    EXPECT_THAT(jstore({"features", folder.location("none")}),
                FailsWith(3, "jstore: NotFound: " + folder.location("none")));
    EXPECT_EQ(2, jstore({"features", "a", "b"}).exitCode);
}

TEST(FeaturesTest, BackEndThatFailsToAnswerHasNone) {
    const auto outcome =
        jstore({"--json", "--jvm-option", "-Xcheck:jni", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                "com.corvallen.jstore.test.EventProvider", "features", "java:///folder"});
    EXPECT_EQ(0, outcome.exitCode);
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(8U, objects.size());
    EXPECT_EQ(true, objects[0]["supported"]);
    for (std::size_t i = 1; i < objects.size(); ++i) {
        EXPECT_EQ(false, objects[i]["supported"]) << objects[i];
    }
}

}  // namespace

}  // namespace jstore::test
