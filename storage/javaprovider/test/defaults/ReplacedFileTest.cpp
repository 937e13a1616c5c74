// What a file keeps when a commit, a truncation or an atomic copy puts another one in its place.
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "defaults/JavaStorage.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {
namespace {

namespace fs = std::filesystem;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;
using foundation::storage::provider::StorageIRI;

/// An operation that leaves the result in a file that held "newest".
struct Replacing {
    std::string name;
    std::string result;
    std::function<void(const IProvider&, const StorageIRI& file, const StorageIRI& source)> run;
};

void commit(const IProvider& provider, const StorageIRI& file) {
    const auto stream = provider.openTransactionalStream(file);
    ASSERT_EQ(stream->write("newer!", 6), 6);
    stream->commit();
}

const std::vector<Replacing>& replacing() {
    static const std::vector<Replacing> all = {
        {"Commit", "newer!",
         [](const IProvider& provider, const StorageIRI& file, const StorageIRI&) { commit(provider, file); }},
        {"Truncation", "new",
         [](const IProvider& provider, const StorageIRI& file, const StorageIRI&) {
             provider.truncateToSize(file, 3);
         }},
        {"AtomicCopy", "new", [](const IProvider& provider, const StorageIRI& file, const StorageIRI& source) {
             provider.copyFileAtomic(source, file, ReplacementPolicy::ReplaceExistingFile);
         }}};
    return all;
}

/// A file "file" that holds "newest", and a file "source" that holds "new".
class FilesTest : public JvmTest {
protected:
    void SetUp() override {
        JvmTest::SetUp();
        const std::u16string text = storage.folder().text();
        folder = fs::path(text.substr(text.find(u"//") + 2));
        write(folder / "source", "new");
        write(folder / "file", "newest");
    }

    static void write(const fs::path& path, const std::string& bytes) { std::ofstream(path) << bytes; }
    static std::string bytesOf(const fs::path& path) {
        std::ifstream in(path);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static mode_t modeOf(const fs::path& path) {
        struct stat status {};
        EXPECT_EQ(lstat(path.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }
    JavaStorage storage{"DefaultFileSystem"};
    fs::path folder;
};

class ReplacedFileTest : public FilesTest, public testing::WithParamInterface<Replacing> {
protected:
    static std::string attributeOf(const fs::path& path) {
        char value[16] = {};
        const ssize_t size = getxattr(path.c_str(), "user.colour", value, sizeof value);
        return size < 0 ? "none" : std::string(value, static_cast<std::size_t>(size));
    }

    void replace(std::u16string_view name) const {
        GetParam().run(storage.provider(), storage.folder().getChild(name), storage.folder().getChild(u"source"));
    }

    /// The names in the folder, sorted.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : fs::directory_iterator(folder)) {
            result.push_back(entry.path().filename());
        }
        std::ranges::sort(result);
        return result;
    }
};

INSTANTIATE_TEST_SUITE_P(Operations, ReplacedFileTest, testing::ValuesIn(replacing()),
                         [](const auto& test) { return test.param.name; });

TEST_P(ReplacedFileTest, PermissionsStay) {
    for (const mode_t mode : {0600U, 0640U, 0755U, 0666U}) {
        write(folder / "file", "newest");
        ASSERT_EQ(chmod((folder / "file").c_str(), mode), 0);
        replace(u"file");
        EXPECT_EQ(bytesOf(folder / "file"), GetParam().result);
        EXPECT_EQ(modeOf(folder / "file"), mode);
    }
}

TEST_P(ReplacedFileTest, AttributesOfUsersStay) {
    if (setxattr((folder / "file").c_str(), "user.colour", "blue", 4, 0) != 0) {
        GTEST_SKIP() << "the disk has no attributes of users";
    }
    replace(u"file");
    EXPECT_EQ(bytesOf(folder / "file"), GetParam().result);
    EXPECT_EQ(attributeOf(folder / "file"), "blue");
}

TEST_P(ReplacedFileTest, LinkGoesOnLeadingToTheFile) {
    fs::create_directory(folder / "far");
    fs::rename(folder / "file", folder / "far" / "file");
    ASSERT_EQ(chmod((folder / "far" / "file").c_str(), 0600), 0);
    fs::create_symlink("far/file", folder / "link");
    replace(u"link");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(bytesOf(folder / "far" / "file"), GetParam().result);
    EXPECT_EQ(modeOf(folder / "far" / "file"), 0600U);
    EXPECT_EQ(names(), (std::vector<std::string>{"far", "link", "source"}));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "far"), fs::directory_iterator()), 1);
}

TEST_P(ReplacedFileTest, LinkAcrossDisksGoesOnLeadingToTheFile) {
    const fs::path far = "/dev/shm/replaced-file-" + std::to_string(getpid());
    write(far, "newest");
    struct Removal {
        fs::path path;
        ~Removal() { fs::remove(path); }
    } const removal{far};
    fs::create_symlink(far, folder / "link");
    replace(u"link");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(bytesOf(far), GetParam().result);
    EXPECT_EQ(names(), (std::vector<std::string>{"file", "link", "source"}));
}

TEST_P(ReplacedFileTest, OtherNamesOfTheFileKeepTheOldContent) {
    fs::create_hard_link(folder / "file", folder / "other");
    replace(u"file");
    EXPECT_EQ(bytesOf(folder / "file"), GetParam().result);
    EXPECT_EQ(bytesOf(folder / "other"), "newest");
}

TEST_P(ReplacedFileTest, OpenStreamStaysWithTheOldFile) {
    const auto stream = storage.provider().openByteStream(storage.folder().getChild(u"file"));
    replace(u"file");
    EXPECT_EQ(stream->write("lost", 4), 4);
    stream->close();
    EXPECT_EQ(bytesOf(folder / "file"), GetParam().result);
}

using CopiedOverFileTest = FilesTest;

TEST_F(CopiedOverFileTest, PlainCopyKeepsTheFileItself) {
    fs::create_hard_link(folder / "file", folder / "other");
    fs::create_symlink("file", folder / "link");
    ASSERT_EQ(chmod((folder / "file").c_str(), 0600), 0);
    storage.provider().copyFile(storage.folder().getChild(u"source"), storage.folder().getChild(u"link"),
                                ReplacementPolicy::ReplaceExistingFile);
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(bytesOf(folder / "file"), "new");
    EXPECT_EQ(bytesOf(folder / "other"), "new");
    EXPECT_EQ(modeOf(folder / "file"), 0600U);
}

}  // namespace
}  // namespace storage::javaprovider::test
