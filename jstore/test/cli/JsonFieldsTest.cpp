#include <map>
#include <set>

#include "support/Help.h"
#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using nlohmann::json;

namespace {

/// A row of the README's table of fields.
struct Row {
    bool all = false;
    std::set<std::string> verbs;
    std::string type;
};

std::map<std::string, Row> documentedFields() {
    std::map<std::string, Row> rows;
    const auto readme = contentOf(JSTORE_README);
    const std::regex line(R"(\n\| `([a-zA-Z.]+)` \| ([^|]+) \| (string|integer|boolean|object) \|)");
    for (auto it = std::sregex_iterator(readme.begin(), readme.end(), line); it != std::sregex_iterator(); ++it) {
        const auto names = allOf((*it)[2].str(), std::regex("`([a-z]+)`"));
        rows[(*it)[1].str()] = {names.empty(), {names.begin(), names.end()}, (*it)[3].str()};
    }
    return rows;
}

std::string typeOf(const json& value) {
    if (value.is_number_integer()) {
        return "integer";
    }
    return value.type_name();
}

/// Every verb is run so that it succeeds and so that it fails.
class JsonFieldsTest : public ::testing::Test {
protected:
    JsonFieldsTest() {
        m_folder.folder("a/b");
        m_folder.file("a/file", "content");
        m_folder.file("file", "content");
        m_folder.file("other", "other");
    }

    void run(const std::string& verb, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--json", verb});
        m_run.insert(verb);
        const auto outcome = Jstore(arguments).in(m_folder.path()).run();
        const auto objects = objectsOf(outcome);
        EXPECT_FALSE(objects.empty()) << verb << outcome.err;
        for (const auto& object : objects) {
            check(verb, object);
        }
    }

    void check(const std::string& verb, const json& object) {
        EXPECT_EQ(object.value("verb", ""), verb) << object;
        ASSERT_TRUE(object.contains("ok")) << object;
        EXPECT_EQ(object.contains("error"), verb != "doctor" && !object["ok"].get<bool>()) << object;
        checkFields(verb, object, "");
        if (object.contains("error")) {
            EXPECT_TRUE(object["error"].contains("code") && object["error"].contains("message")) << object;
            checkFields(verb, object["error"], "error.");
        }
    }

    void checkFields(const std::string& verb, const json& object, const std::string& prefix) {
        for (const auto& [key, value] : object.items()) {
            const auto row = m_fields.find(prefix + key);
            ASSERT_NE(row, m_fields.end()) << prefix + key << " is not documented: " << object;
            EXPECT_TRUE(row->second.all || row->second.verbs.count(verb) == 1) << prefix + key << " in " << verb;
            EXPECT_EQ(typeOf(value), row->second.type) << prefix + key;
            m_seen.insert({prefix + key, row->second.all ? "" : verb});
        }
    }

    TemporaryFolder m_folder;
    const std::map<std::string, Row> m_fields = documentedFields();
    std::set<std::string> m_run;
    std::set<std::pair<std::string, std::string>> m_seen;
};

TEST_F(JsonFieldsTest, EveryFieldOfEveryVerbIsAsDocumented) {
    run("ls", {"-l", "a", "none"});
    run("tree", {"a", "none"});
    run("find", {"a", "none"});
    run("stat", {"file", "a", "none"});
    run("exists", {"file", "none"});
    run("cat", {"file", "none"});
    run("cp", {"file", "copy"});
    run("cp", {"file", "other"});
    run("mkdir", {"new", "a"});
    run("touch", {"fresh", "none/x"});
    run("mv", {"copy", "moved"});
    run("mv", {"file", "other"});
    run("rm", {"moved", "none"});
    run("rm", {std::string(300, 'x')});
    run("du", {"a", "none"});
    run("df", {"a", "none"});
    run("features", {"a"});
    run("features", {"none"});
    run("watch", {"--for", "100ms", "a", "none"});
    run("watch", {"--class-path", JSTORE_TEST_BACKENDS, "--provider", "com.corvallen.jstore.test.EventProvider",
                  "--for", "100ms", "java:///deep"});
    run("doctor", {});
    run("doctor", {"--java-home", "/nonexistent"});
    run("ls", {"--java-home", "/nonexistent", "a"});
    for (const auto& verb : verbs()) {
        EXPECT_TRUE(verb == "completion" || m_run.count(verb) == 1) << verb << " was not run";
    }
    ASSERT_GE(m_fields.size(), 25U);
    for (const auto& [field, row] : m_fields) {
        if (row.all) {
            EXPECT_EQ(m_seen.count({field, ""}), 1U) << field << " never came";
        }
        for (const auto& verb : row.verbs) {
            EXPECT_EQ(m_seen.count({field, verb}), 1U) << field << " never came from " << verb;
        }
    }
}

}  // namespace

}  // namespace jstore::test
