#include <algorithm>
#include <set>

#include "real/FileTree.h"
#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::IsEmpty;

namespace {

using Names = std::vector<std::string>;

/// Names that have something in common.
struct Kind {
    const char* name;
    Names (*make)();
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

/// Each of the bytes as a name, at the beginning of one, at the end, and inside.
Names namesWith(int first, int last) {
    Names names;
    for (int byte = first; byte <= last; ++byte) {
        const std::string one(1, static_cast<char>(byte));
        if (one == "/") {
            continue;
        }
        if (one != ".") {
            names.push_back(one);
        }
        names.insert(names.end(), {one + "x", "x" + one, "x" + one + "y"});
    }
    return names;
}

Names repeated(const std::string& unit, std::size_t bytes) {
    std::string name;
    while (name.size() + unit.size() <= bytes) {
        name += unit;
    }
    return {name + std::string(bytes - name.size(), 'x')};
}

Names longest() {
    Names names;
    for (const auto* unit : {"a", " ", "%", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xFF", "\xEE\xBE\x80"}) {
        names.push_back(repeated(unit, 255).front());
        names.push_back(repeated(unit, 254).front());
    }
    return names;
}

const Kind Kinds[] = {
    {"ControlCharacters", [] { return namesWith(0x01, 0x1F); }},
    {"Ascii", [] { return namesWith(0x20, 0x7F); }},
    {"BytesThatAreNotUtf8", [] { return namesWith(0x80, 0xFF); }},
    {"Dashes", [] { return Names{"-", "--", "-r", "--help", "--json", "-x y"}; }},
    {"Blanks", [] { return Names{" ", "  ", " a", "a ", " a ", "a  b", "\t", "a\tb", "\xC2\xA0", "\xE3\x80\x80"}; }},
    {"Lines", [] { return Names{"\n", "a\n", "\na", "a\nb", "a\r\nb", "\r", "\xE2\x80\xA8", "\xC2\x85"}; }},
    {"Dots", [] { return Names{"...", "....", ".a", "..a", "a.", "a..", ". ", " .", ".\n", "~", "a~"}; }},
    {"Percents",
     [] {
         return Names{"%",   "%%",  "%41",    "A",   "%2F", "%2f",    "%00",    "%0A", "%25",   "%2541", "100%",
                      "%zz", "a%4", "%C3%BC", "%FF", "%2E", "%2E%2E", "%u0041", "%",   "a%20b", "a b",   "a+b"};
     }},
    {"Separators",
     [] {
         return Names{"a#b",   "a?b", "#",     "?",  "*",     "a*b",      "[a,b]", "a:b",    "a;b",
                      "a&b=c", "C:",  "C:\\x", "\\", "a\\b",  "\\\\x\\y", "java:", "java:x", "|",
                      "<>",    "\"",  "'",     "`",  "$HOME", "{}",       "@",     "!"};
     }},
    {"Emoji",
     [] {
         return Names{"\xF0\x9F\x98\x80",
                      "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x9A\x80",
                      "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA",
                      "a\xF0\x9F\x98\x80z",
                      "\xF0\x90\x80\x80",
                      "\xF4\x8F\xBF\xBF"};
     }},
    {"TwoSpellingsOfOneCharacter",
     [] { return Names{"\xC3\xA9", "e\xCC\x81", "\xE2\x84\xAB", "\xC3\x85", "A\xCC\x8A", "\xEF\xAC\x81", "fi"}; }},
    {"InvisibleCharacters",
     [] {
         return Names{
             "\xEF\xBB\xBF"
             "a",
             "a\xE2\x80\x8B",
             "\xE2\x80\xAE"
             "abc",
             "a\xC2\xAD"
             "b",
             "\xEF\xBF\xBE",
             "\xEF\xBF\xBF",
             "\xEF\xBF\xBD",
             "\xC2\x80"};
     }},
    {"BrokenUtf8",
     [] {
         return Names{"\xC3",
                      "\xC3(",
                      "\xE2\x82",
                      "\xE2\x82x",
                      "\xF0\x9F\x98",
                      "\xF0\x9F\x98x",
                      "\xC0\xAF",
                      "\xC1\x81",
                      "\xE0\x80\xAF",
                      "\xED\xA0\x80",
                      "\xED\xB0\x80",
                      "\xED\xA0\xBD\xED\xB8\x80",
                      "\xF4\x90\x80\x80",
                      "\xF8\x88\x80\x80\x80",
                      "gr\xFC\xDF"
                      "e",
                      "\xC3\xA9\xE9",
                      "\xE9\xC3\xA9",
                      "\x80\xBF"};
     }},
    {"CharactersThatStandForBytes",
     [] {
         return Names{"\xEE\xBE\x80",
                      "\xEE\xBF\xBF",
                      "\xEE\xBD\xBF",
                      "\xEF\x80\x80",
                      "\x80",
                      "\xFF",
                      "a\xEE\xBE\xA9"
                      "b"};
     }},
    {"Longest", longest},
};

/// A folder of files and a folder of folders that have these names.
class AwkwardNamesTest : public ::testing::TestWithParam<Kind> {
protected:
    AwkwardNamesTest() {
        const auto names = GetParam().make();
        m_names.insert(names.begin(), names.end());
        m_folder.folder("mounted");
        m_folder.folder("original/files");
        for (const auto& name : m_names) {
            m_folder.file("original/files/" + name, name);
            m_folder.folder("original/folders/" + name);
            m_folder.file("original/folders/" + name + "/below", name + name);
        }
        EXPECT_EQ(tree("original").items.size(), 3 * m_names.size() + 2) << "this disk changes names itself";
    }

    [[nodiscard]] FileTree tree(std::string_view name) const { return readTree(m_folder / name); }

    /// Runs with the folder "mounted" mounted.
    [[nodiscard]] Outcome mounted(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--mount", "m=" + (m_folder / "mounted").string()});
        return jstore(std::move(arguments));
    }

    TemporaryFolder m_folder;
    std::set<std::string> m_names;
};

TEST_P(AwkwardNamesTest, AreCopiedInAndOutByteForByte) {
    ASSERT_THAT(mounted({"cp", "-r", (m_folder / "original").string(), "java://m/copy"}), IsSilentlyDone());
    EXPECT_THAT(differences(tree("original"), tree("mounted/copy")), IsEmpty());
    ASSERT_THAT(mounted({"cp", "-r", "java://m/copy", m_folder.location("out")}), IsSilentlyDone());
    EXPECT_THAT(differences(tree("mounted/copy"), tree("out")), IsEmpty());
}

TEST_P(AwkwardNamesTest, AreShownOnALineEachAndApart) {
    const auto shown = jstore({"ls", m_folder.location("original/files")});
    EXPECT_EQ(shown.exitCode, 0) << shown.err;
    const auto lines = shown.outLines();
    EXPECT_EQ(lines.size(), m_names.size()) << shown.out;
    EXPECT_EQ(std::set(lines.begin(), lines.end()).size(), m_names.size()) << shown.out;
}

TEST_P(AwkwardNamesTest, LocationsInJsonLeadBackToThem) {
    std::vector<std::string> stat{"--json", "stat"};
    std::set<std::string> names;
    for (const auto& object : objectsOf(jstore({"--json", "ls", m_folder.location("original/files")}))) {
        names.insert(object.at("name").get<std::string>());
        stat.push_back(object.at("location"));
    }
    EXPECT_EQ(names.size(), m_names.size());
    const auto outcome = jstore(stat);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), m_names.size());
    // A file holds its name, so the sizes show that each was found once.
    std::multiset<std::size_t> sizes;
    std::multiset<std::size_t> expected;
    for (const auto& object : objects) {
        sizes.insert(object.at("size").get<std::size_t>());
    }
    std::transform(m_names.begin(), m_names.end(), std::inserter(expected, expected.end()),
                   [](const std::string& name) { return name.size(); });
    EXPECT_EQ(sizes, expected);
}

TEST_P(AwkwardNamesTest, LinesOfFindAreLocationsThatRmTakes) {
    const auto found = jstore({"find", "--type", "f", m_folder.location("original/files")});
    ASSERT_EQ(found.exitCode, 0) << found.err;
    std::vector<std::string> rm{"rm"};
    for (const auto& line : found.outLines()) {
        rm.push_back(line);
    }
    ASSERT_EQ(rm.size(), m_names.size() + 1) << found.out;
    EXPECT_THAT(jstore(rm), IsSilentlyDone());
    EXPECT_TRUE(fs::is_empty(m_folder / "original/files"));
    EXPECT_EQ(tree("original").items.size(), 2 * m_names.size() + 2);
}

TEST_P(AwkwardNamesTest, RmTakesThemAsAShellGivesThem) {
    std::vector<std::string> rm{"rm"};
    for (const auto& name : m_names) {
        rm.push_back((m_folder / "original/files" / name).string());
    }
    EXPECT_THAT(jstore(rm), IsSilentlyDone());
    EXPECT_TRUE(fs::is_empty(m_folder / "original/files"));
    EXPECT_EQ(tree("original").items.size(), 2 * m_names.size() + 2);
}

INSTANTIATE_TEST_SUITE_P(Kinds, AwkwardNamesTest, ::testing::ValuesIn(Kinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace

}  // namespace jstore::test
