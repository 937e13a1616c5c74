#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using nlohmann::json;
using ::testing::HasSubstr;

namespace {

class JsonTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string at(std::string_view name) const { return m_folder.location(name); }

    TemporaryFolder m_folder;
};

TEST_F(JsonTest, EachArgumentHasItsObject) {
    m_folder.folder("b");
    const auto outcome = jstore({"--json", "mkdir", at("a \"\xF0\x9F\x98\x80\""), at("b")});
    EXPECT_EQ(6, outcome.exitCode);
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(2U, objects.size());
    EXPECT_EQ(json({{"verb", "mkdir"}, {"location", at("a \"\xF0\x9F\x98\x80\"")}, {"ok", true}}), objects[0]);
    EXPECT_EQ(json({{"verb", "mkdir"},
                    {"location", at("b")},
                    {"ok", false},
                    {"error", {{"code", "AlreadyExists"}, {"message", "something is there already"}}}}),
              objects[1]);
    EXPECT_EQ("jstore: AlreadyExists: " + at("b") + '\n', outcome.err);
}

TEST_F(JsonTest, ExistsTellsTheType) {
    const auto objects = objectsOf(jstore({"exists", "--json", "java://" + m_folder.path().string(), at("none")}));
    ASSERT_EQ(2U, objects.size());
    EXPECT_EQ("folder", objects[0]["type"]);
    EXPECT_EQ(true, objects[0]["ok"]);
    EXPECT_EQ(false, objects[1]["ok"]);
    EXPECT_EQ("NotFound", objects[1]["error"]["code"]);
}

TEST_F(JsonTest, MoveTellsTheDestination) {
    m_folder.file("a");
    m_folder.folder("d");
    const auto objects = objectsOf(jstore({"--json", "mv", at("a"), at("d")}));
    ASSERT_EQ(1U, objects.size());
    EXPECT_EQ(json({{"verb", "mv"}, {"location", at("a")}, {"destination", at("d/a")}, {"ok", true}}), objects[0]);
}

TEST_F(JsonTest, ErrorElsewhereNamesItsLocation) {
    m_folder.file("a");
    m_folder.file("b");
    const auto objects = objectsOf(jstore({"--json", "mv", at("a"), at("b")}));
    ASSERT_EQ(1U, objects.size());
    EXPECT_EQ(at("a"), objects[0]["location"]);
    EXPECT_EQ(at("b"), objects[0]["error"]["location"]);
}

TEST_F(JsonTest, TouchAndRemoveHaveObjects) {
    EXPECT_EQ(json({{"verb", "touch"}, {"location", at("a")}, {"ok", true}}),
              objectsOf(jstore({"--json", "touch", at("a")})).at(0));
    EXPECT_EQ(json({{"verb", "rm"}, {"location", at("a")}, {"ok", true}}),
              objectsOf(jstore({"--json", "rm", at("a")})).at(0));
}

TEST_F(JsonTest, FailureOfTheCommandIsOneObject) {
    const auto outcome = jstore({"--json", "--java-home", "/nonexistent", "touch", "a", "b"});
    EXPECT_EQ(7, outcome.exitCode);
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(1U, objects.size());
    EXPECT_EQ("NoJava", objects[0]["error"]["code"]);
    EXPECT_EQ(false, objects[0]["ok"]);
    EXPECT_FALSE(objects[0].contains("location"));
}

TEST_F(JsonTest, InternalErrorIsOneLine) {
    const auto outcome = jstore({"--json", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                                 "com.corvallen.jstore.test.ThrowingProvider", "touch", "java:///x"});
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(1U, objects.size());
    EXPECT_EQ("Internal", objects[0]["error"]["code"]);
    EXPECT_THAT(objects[0]["error"]["message"].get<std::string>(), HasSubstr("first line second line"));
}

TEST_F(JsonTest, DoctorHasAnObjectForEachFinding) {
    const auto outcome = jstore({"--json", "doctor"});
    EXPECT_EQ(0, outcome.exitCode);
    const auto objects = objectsOf(outcome);
    EXPECT_GE(objects.size(), 8U);
    for (const auto& object : objects) {
        EXPECT_EQ("doctor", object["verb"]);
        EXPECT_TRUE(object.contains("check") && object.contains("ok") && object.contains("detail")) << object;
        EXPECT_THAT(object["mark"].get<std::string>(), ::testing::AnyOf("ok", "warn", "fail"));
    }
}

}  // namespace

}  // namespace jstore::test
