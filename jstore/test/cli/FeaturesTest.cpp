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
    ASSERT_EQ(objects.size(), 8U);
    EXPECT_EQ(
        objects[6],
        json({{"verb", "features"}, {"feature", "AllowsMovesAndDeletesWhenOpen"}, {"supported", false}, {"ok", true}}));
}

TEST(FeaturesTest, LocationHasToBeThere) {
    const TemporaryFolder folder;
    const auto objects = objectsOf(jstore({"--json", "features", folder.location("")}));
    ASSERT_EQ(objects.size(), 8U);
    EXPECT_EQ(objects[0]["location"], folder.location(""));
    EXPECT_THAT(jstore({"features", folder.location("none")}),
                FailsWith(3, "jstore: NotFound: " + folder.location("none")));
    EXPECT_EQ(jstore({"features", "a", "b"}).exitCode, 2);
}

TEST(FeaturesTest, BackEndThatFailsToAnswerHasNone) {
    const auto outcome =
        jstore({"--json", "--jvm-option", "-Xcheck:jni", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                "com.corvallen.jstore.test.EventProvider", "features", "java:///folder"});
    EXPECT_EQ(outcome.exitCode, 0);
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 8U);
    EXPECT_EQ(objects[0]["supported"], true);
    for (std::size_t i = 1; i < objects.size(); ++i) {
        EXPECT_EQ(objects[i]["supported"], false) << objects[i];
    }
}

}  // namespace

}  // namespace jstore::test
