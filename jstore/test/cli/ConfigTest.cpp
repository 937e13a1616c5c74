#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using nlohmann::json;
using ::testing::HasSubstr;

namespace {

Outcome withSettings(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--json", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                                         "com.corvallen.jstore.test.SettingsProvider"});
    arguments.insert(arguments.end(), {"stat", "java:///x"});
    return jstore(std::move(arguments));
}

json attributesOf(const Outcome& outcome) { return objectsOf(outcome).at(0).at("attributes"); }

TEST(ConfigTest, SettingReachesTheBackEnd) {
    EXPECT_EQ(attributesOf(withSettings({"--config", "gds.enableContentCache=true"})),
              json({{"gds.enableContentCache", "true"}}));
    EXPECT_EQ(attributesOf(withSettings({"--config=gds.enableContentCache=a=\xC3\xA4"})),
              json({{"gds.enableContentCache", "a=\xC3\xA4"}}));
}

TEST(ConfigTest, EmptyValueReachesTheBackEndAsNone) {
    EXPECT_EQ(attributesOf(withSettings({"--config", "gds.enableContentCache="})),
              json({{"gds.enableContentCache", "null"}}));
}

TEST(ConfigTest, LastOfTwoValuesCounts) {
    EXPECT_EQ(
        attributesOf(withSettings({"--config", "gds.enableContentCache=a", "--config", "gds.enableContentCache=b"})),
        json({{"gds.enableContentCache", "b"}}));
}

TEST(ConfigTest, WithoutSettingsNothingIsConfigured) { EXPECT_EQ(attributesOf(withSettings({})), json::object()); }

TEST(ConfigTest, WrongSettingStartsNoJava) {
    EXPECT_THAT(jstore({"--java-home", "/nonexistent", "--config", "some.thing=1", "exists", "/"}),
                FailsWith(2, HasSubstr("--config some.thing=1: ")));
    EXPECT_THAT(jstore({"--java-home", "/nonexistent", "--config", "gds.enableContentCache", "exists", "/"}),
                FailsWith(2, HasSubstr("expected KEY=VALUE")));
}

TEST(ConfigTest, ValueThatTheBackEndRefusesIsAWrongCommandLine) {
    EXPECT_THAT(
        jstore({"--config", "gds.enableContentCache=perhaps", "exists", "/"}),
        FailsWith(2,
                  "jstore: --config gds.enableContentCache=perhaps: the back end refuses this value (NotSupported)"));
}

TEST(ConfigTest, BackEndThatBreaksOnASettingIsTold) {
    const auto outcome = withSettings({"--config", "gds.enableContentCache=broken"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr("cannot configure com.corvallen.jstore.test.SettingsProvider: "));
    EXPECT_EQ(objectsOf(outcome).at(0)["error"]["code"], "Provider");
}

/// A file is read twice by one command, and changes in between without a trace: size and times stay.
class ContentCacheTest : public ::testing::Test {
protected:
    /// More than a pipe and one read of this test hold, so that the command stands still in the midst of the first.
    static constexpr std::size_t Size = 250'000;

    ContentCacheTest() { write('x'); }

    void write(char content) const {
        std::ofstream file(m_file, std::ios::binary | std::ios::in | std::ios::out | std::ios::ate);
        file.seekp(0);
        file << std::string(Size, content);
        file.close();
        ASSERT_FALSE(file.fail());
        std::filesystem::last_write_time(m_file, m_time);
    }

    [[nodiscard]] std::string readTwice(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"cat", m_file.string(), m_file.string()});
        Jstore run(std::move(arguments));
        run.start();
        EXPECT_TRUE(run.readUntil([](const Outcome& outcome) { return !outcome.out.empty(); }));
        write('y');
        return run.wait().out;
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_file = m_folder.file("file", "to be overwritten");
    std::filesystem::file_time_type m_time = std::filesystem::last_write_time(m_file) - std::chrono::hours(1);
};

TEST_F(ContentCacheTest, SecondReadIsServedFromMemoryWhenSwitchedOn) {
    EXPECT_TRUE(std::string(2 * Size, 'x') == readTwice({"--config", "gds.enableContentCache=true"}));
}

TEST_F(ContentCacheTest, SecondReadIsOfTheFileWhenSwitchedOff) {
    for (const auto& arguments : {std::vector<std::string>(), {"--config", "gds.enableContentCache=false"}}) {
        write('x');
        const auto read = readTwice(arguments);
        ASSERT_EQ(read.size(), 2 * Size);
        EXPECT_TRUE(std::string(Size, 'y') == read.substr(Size));
    }
}

}  // namespace

}  // namespace jstore::test
