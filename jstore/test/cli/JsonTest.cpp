#include "support/FolderTest.h"
#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

using nlohmann::json;
using ::testing::HasSubstr;

namespace {

class JsonTest : public FolderTest {};

TEST_F(JsonTest, EachArgumentHasItsObject) {
    m_folder.folder("b");
    const auto outcome = jstore({"--json", "mkdir", at("a \"\xF0\x9F\x98\x80\""), at("b")});
    EXPECT_EQ(outcome.exitCode, 6);
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0], json({{"verb", "mkdir"}, {"location", at("a \"\xF0\x9F\x98\x80\"")}, {"ok", true}}));
    EXPECT_EQ(objects[1], json({{"verb", "mkdir"},
                                {"location", at("b")},
                                {"ok", false},
                                {"error", {{"code", "AlreadyExists"}, {"message", "something is there already"}}}}));
    EXPECT_EQ(outcome.err, "jstore: AlreadyExists: " + at("b") + '\n');
}

TEST_F(JsonTest, ExistsTellsTheType) {
    const auto objects = objectsOf(jstore({"exists", "--json", "java://" + m_folder.path().string(), at("none")}));
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0]["type"], "folder");
    EXPECT_EQ(objects[0]["ok"], true);
    EXPECT_EQ(objects[1]["ok"], false);
    EXPECT_EQ(objects[1]["error"]["code"], "NotFound");
}

TEST_F(JsonTest, MoveTellsTheDestination) {
    m_folder.file("a");
    m_folder.folder("d");
    const auto objects = objectsOf(jstore({"--json", "mv", at("a"), at("d")}));
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0], json({{"verb", "mv"}, {"location", at("a")}, {"destination", at("d/a")}, {"ok", true}}));
}

TEST_F(JsonTest, ErrorElsewhereNamesItsLocation) {
    m_folder.file("a");
    m_folder.file("b");
    const auto objects = objectsOf(jstore({"--json", "mv", at("a"), at("b")}));
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0]["location"], at("a"));
    EXPECT_EQ(objects[0]["error"]["location"], at("b"));
}

TEST_F(JsonTest, TouchAndRemoveHaveObjects) {
    EXPECT_EQ(objectsOf(jstore({"--json", "touch", at("a")})).at(0),
              json({{"verb", "touch"}, {"location", at("a")}, {"ok", true}}));
    EXPECT_EQ(objectsOf(jstore({"--json", "rm", at("a")})).at(0),
              json({{"verb", "rm"}, {"location", at("a")}, {"ok", true}}));
}

TEST_F(JsonTest, FailureOfTheCommandIsOneObject) {
    const auto outcome = jstore({"--json", "--java-home", "/nonexistent", "touch", "a", "b"});
    EXPECT_EQ(outcome.exitCode, 7);
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0]["error"]["code"], "NoJava");
    EXPECT_EQ(objects[0]["ok"], false);
    EXPECT_FALSE(objects[0].contains("location"));
}

TEST_F(JsonTest, InternalErrorIsOneLine) {
    const auto outcome = jstore({"--json", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                                 "com.corvallen.jstore.test.ThrowingProvider", "touch", "java:///x"});
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0]["error"]["code"], "Internal");
    EXPECT_THAT(objects[0]["error"]["message"].get<std::string>(), HasSubstr("first line second line"));
}

TEST_F(JsonTest, DoctorHasAnObjectForEachFinding) {
    const auto outcome = jstore({"--json", "doctor"});
    EXPECT_EQ(outcome.exitCode, 0);
    const auto objects = objectsOf(outcome);
    EXPECT_GE(objects.size(), 8U);
    for (const auto& object : objects) {
        EXPECT_EQ(object["verb"], "doctor");
        EXPECT_TRUE(object.contains("check") && object.contains("ok") && object.contains("detail")) << object;
        EXPECT_THAT(object["mark"].get<std::string>(), ::testing::AnyOf("ok", "warn", "fail"));
    }
}

}  // namespace

}  // namespace jstore::test
