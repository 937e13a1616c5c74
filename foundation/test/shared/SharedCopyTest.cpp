// Copies of both kinds.
#include <random>

#include "SharedTest.h"

namespace foundation::test {
namespace {

class SharedCopyTest : public SharedTest {
protected:
    void SetUp() override {
        SharedTest::SetUp();
        write(m_source = at(u"source"), "new content");
        m_target = at(u"target");
    }

    /// Runs the test for the plain copy and the atomic one.
    void forBoth(const std::function<void(const std::function<void(Policy)>& copy)>& test) const {
        {
            SCOPED_TRACE("plain");
            test([this](Policy policy) { provider().copyFile(m_source, m_target, policy); });
        }
        SCOPED_TRACE("atomic");
        test([this](Policy policy) { provider().copyFileAtomic(m_source, m_target, policy); });
    }

    StorageIRI m_source;
    StorageIRI m_target;
};
SHARED_TESTS(SharedCopyTest);

TEST_P(SharedCopyTest, MissingDestinationIsCreated) {
    forBoth([this](const auto& copy) {
        copy(Policy::KeepExisting);
        EXPECT_EQ(bytesOf(m_target), "new content");
        EXPECT_EQ(names(), (Names{u"source", u"target"}));
        provider().removeFile(m_target);
    });
}

TEST_P(SharedCopyTest, ExistingFileIsKeptOrReplacedByPolicy) {
    forBoth([this](const auto& copy) {
        for (const Policy policy : {Policy::ReplaceExisting, Policy::ReplaceExistingFile}) {
            write(m_target, "old content that is longer");
            expectError(ErrorCode::AlreadyExists, m_target, [&] { copy(Policy::KeepExisting); });
            EXPECT_EQ(bytesOf(m_target), "old content that is longer");
            copy(policy);
            EXPECT_EQ(bytesOf(m_target), "new content");
        }
        EXPECT_EQ(names(), (Names{u"source", u"target"}));
    });
}

TEST_P(SharedCopyTest, FolderIsNeverReplacedAsAFile) {
    provider().createFolder(m_target);
    forBoth([this](const auto& copy) {
        expectError(ErrorCode::AlreadyExists, m_target, [&] { copy(Policy::ReplaceExistingFile); });
        EXPECT_TRUE(provider().folderExists(m_target));
        EXPECT_EQ(names(), (Names{u"source", u"target"}));
    });
}

TEST_P(SharedCopyTest, MissingSourceAndFolderAsSourceAreRefused) {
    provider().removeFile(m_source);
    forBoth(
        [this](const auto& copy) { expectError(ErrorCode::NotFound, m_source, [&] { copy(Policy::KeepExisting); }); });
    provider().createFolder(m_source);
    forBoth([this](const auto& copy) {
        expectError(ErrorCode::NotAFile, m_source, [&] { copy(Policy::KeepExisting); });
        EXPECT_FALSE(provider().exists(m_target));
    });
}

TEST_P(SharedCopyTest, BytesOfAFileLargerThanTheBufferArrive) {
    std::minstd_rand random(1);
    std::string bytes(1'000'003, '\0');
    std::ranges::generate(bytes, [&] { return static_cast<char>(random()); });
    write(m_source, bytes);
    forBoth([&](const auto& copy) {
        copy(Policy::ReplaceExisting);
        EXPECT_TRUE(bytesOf(m_target) == bytes);
    });
}

TEST_P(SharedCopyTest, CopyOntoItselfChangesNothing) {
    m_target = m_source;
    forBoth([this](const auto& copy) {
        copy(Policy::ReplaceExisting);
        expectError(ErrorCode::AlreadyExists, m_target, [&] { copy(Policy::KeepExisting); });
        EXPECT_EQ(bytesOf(m_source), "new content");
    });
}

}  // namespace
}  // namespace foundation::test
