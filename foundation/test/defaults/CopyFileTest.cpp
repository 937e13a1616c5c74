#include "DefaultsTest.h"

namespace foundation::test {
namespace {

/// What both kinds of copy have in common.
class CopyTest : public DefaultsTest, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        DefaultsTest::SetUp();
        write(m_source, "new content");
    }

    void copy(const StorageIRI& source, const StorageIRI& destination, Policy policy = Policy::KeepExisting) const {
        if (GetParam()) {
            m_provider.copyFileAtomic(source, destination, policy);
        } else {
            m_provider.copyFile(source, destination, policy);
        }
    }

    /// Whether the file is there; asks the back end nothing that a hook meets.
    [[nodiscard]] bool has(const StorageIRI& location) const {
        try {
            (void)bytesOf(location);
            return true;
        } catch (const Exception&) {
            return false;
        }
    }

    void expectCopied() const {
        EXPECT_EQ(bytesOf(m_target), "new content");
        EXPECT_EQ(bytesOf(m_source), "new content");
        EXPECT_EQ(names(), (std::vector<std::u16string>{u"source", u"target"}));
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, CopyTest, testing::Bool(),
                         [](const auto& test) { return std::string(test.param ? "Atomic" : "Plain"); });

TEST_P(CopyTest, MissingDestinationIsCreated) {
    copy(m_source, m_target);
    expectCopied();
}

TEST_P(CopyTest, EmptyFileIsCopied) {
    write(m_source, "");
    copy(m_source, m_target);
    EXPECT_EQ(bytesOf(m_target), "");
}

TEST_P(CopyTest, FileLargerThanTheBufferIsCopied) {
    std::string bytes(1'000'003, '\0');
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        bytes[at] = static_cast<char>(at * 31 >> 5);
    }
    write(m_source, bytes);
    copy(m_source, m_target);
    EXPECT_EQ(bytesOf(m_target), bytes);
}

TEST_P(CopyTest, ExistingFileIsKeptOrReplacedByPolicy) {
    write(m_target, "old content that is longer than the new one");
    expectError(ErrorCode::AlreadyExists, m_target, [this] { copy(m_source, m_target); });
    EXPECT_EQ(bytesOf(m_target), "old content that is longer than the new one");
    for (const Policy policy : {Policy::ReplaceExisting, Policy::ReplaceExistingFile}) {
        write(m_target, "old content that is longer than the new one");
        copy(m_source, m_target, policy);
        expectCopied();
    }
}

TEST_P(CopyTest, AttributesOfTheReplacedFileStay) {
    write(m_target, "old");
    m_provider.setExtendedAttributes(m_target, storage::provider::ExtendedAttributes({{"colour", 1}}));
    copy(m_source, m_target, Policy::ReplaceExistingFile);
    expectCopied();
    EXPECT_EQ(m_provider.getExtendedAttributes(m_target).all().size(), 1U);
}

TEST_P(CopyTest, ExistingFolderIsReplacedOnlyByTheOnePolicy) {
    m_provider.createFolder(m_target);
    m_provider.createFile(m_target.getChild(u"child"));
    for (const Policy policy : {Policy::KeepExisting, Policy::ReplaceExistingFile}) {
        expectError(ErrorCode::AlreadyExists, m_target, [&] { copy(m_source, m_target, policy); });
        EXPECT_TRUE(m_provider.fileExists(m_target.getChild(u"child")));
    }
    copy(m_source, m_target, Policy::ReplaceExisting);
    expectCopied();
}

TEST_P(CopyTest, MissingSourceIsReportedAndNothingIsCreated) {
    m_provider.removeFile(m_source);
    expectError(ErrorCode::NotFound, m_source, [this] { copy(m_source, m_target); });
    EXPECT_TRUE(names().empty());
}

TEST_P(CopyTest, MissingSourceLeavesTheDestinationAlone) {
    write(m_target, "old");
    const StorageIRI missing = m_folder.getChild(u"missing");
    expectError(ErrorCode::NotFound, missing, [&] { copy(missing, m_target, Policy::ReplaceExisting); });
    EXPECT_EQ(bytesOf(m_target), "old");
}

TEST_P(CopyTest, FolderIsNotAFile) {
    expectError(ErrorCode::NotAFile, m_folder, [this] { copy(m_folder, m_target); });
}

TEST_P(CopyTest, MissingFolderOfTheDestinationIsReported) {
    const StorageIRI target = m_folder.getChild(u"missing").getChild(u"target");
    expectError(ErrorCode::NotFound, target, [&] { copy(m_source, target); });
}

TEST_P(CopyTest, FileInPlaceOfTheDestinationsFolderIsReported) {
    const StorageIRI target = m_source.getChild(u"target");
    expectError(ErrorCode::NotAFolder, target, [&] { copy(m_source, target); });
}

TEST_P(CopyTest, RefusedFolderIsReportedWithTheDestination) {
    m_provider.setReadOnly(m_folder);
    expectError(ErrorCode::AccessDenied, m_target, [this] { copy(m_source, m_target); });
}

TEST_P(CopyTest, CopyOntoItselfChangesNothing) {
    const StorageIRI same(u"java://mount/folder//./source");
    for (const Policy policy : {Policy::ReplaceExisting, Policy::ReplaceExistingFile}) {
        m_provider.plan().failAt(0, FaultPlan::Mode::Once);
        copy(m_source, same, policy);
        EXPECT_EQ(m_provider.plan().operations(), (std::vector<std::string>{"openReadOnlyByteStream", "close"}));
        EXPECT_EQ(bytesOf(m_source), "new content");
    }
    expectError(ErrorCode::AlreadyExists, same, [&] { copy(m_source, same); });
    EXPECT_EQ(bytesOf(m_source), "new content");
}

TEST_P(CopyTest, CopyOfNothingOntoItselfIsReported) {
    expectError(ErrorCode::NotFound, m_target, [this] { copy(m_target, m_target, Policy::ReplaceExisting); });
}

TEST_P(CopyTest, ShortReadsAndWritesAreGoneOnWith) {
    for (std::streamsize mostAtOnce = 1; mostAtOnce <= 12; ++mostAtOnce) {
        SCOPED_TRACE(mostAtOnce);
        m_provider.habits().mostAtOnce = mostAtOnce;
        copy(m_source, m_target, Policy::ReplaceExisting);
        EXPECT_EQ(bytesOf(m_target), "new content");
    }
}

TEST_P(CopyTest, StreamThatIdlesAWhileIsWaitedFor) {
    m_provider.habits().mostAtOnce = 3;
    m_provider.habits().idleCalls = 99;
    copy(m_source, m_target);
    expectCopied();
}

TEST_P(CopyTest, StreamThatIdlesForEverIsGivenUp) {
    m_provider.habits().idleCalls = 100;
    expectError(ErrorCode::Unavailable, m_source, [this] { copy(m_source, m_target); });
    EXPECT_EQ(names(), std::vector<std::u16string>{u"source"});
}

TEST_P(CopyTest, CountBeyondWhatWasAskedIsNotBelieved) {
    m_provider.habits().boast = 1;
    expectError(ErrorCode::Unknown, m_target, [this] { copy(m_source, m_target); });
    EXPECT_EQ(names(), std::vector<std::u16string>{u"source"});
}

TEST_P(CopyTest, NegativeCountIsNotBelieved) {
    m_provider.habits().boast = -20;
    expectError(ErrorCode::Unknown, m_target, [this] { copy(m_source, m_target); });
    EXPECT_EQ(names(), std::vector<std::u16string>{u"source"});
}

TEST_P(CopyTest, FileThatAnotherWritesMeanwhileIsNeverTakenBack) {
    std::unique_ptr<storage::provider::ByteStream> other;
    m_provider.setHook([&, done = false](std::string_view, const StorageIRI&) mutable {
        if (!done && has(m_target)) {
            done = true;
            other = m_provider.openByteStream(m_target);
            (void)other->write("from elsewhere", 14);
        }
    });
    try {
        copy(m_source, m_target);
        expectCopied();
    } catch (const Exception&) {
        EXPECT_TRUE(has(m_target));
    }
    m_provider.setHook({});
    if (other != nullptr) {
        other->close();
        EXPECT_EQ(bytesOf(m_target), "from elsewhere");
    }
}

TEST_P(CopyTest, FileThatAppearsMeanwhileIsKeptOrReplacedByPolicy) {
    const auto appear = [this](std::string_view operation, const StorageIRI&) {
        if (operation == "moveFile") {
            write(m_target, "from elsewhere, and longer than the new content");
        }
    };
    m_provider.setHook(appear);
    expectError(ErrorCode::AlreadyExists, m_target, [this] { copy(m_source, m_target); });
    EXPECT_EQ(bytesOf(m_target), "from elsewhere, and longer than the new content");
    for (const Policy policy : {Policy::ReplaceExisting, Policy::ReplaceExistingFile}) {
        m_provider.setHook({});
        m_provider.removeFile(m_target);
        m_provider.setHook(appear);
        copy(m_source, m_target, policy);
        expectCopied();
    }
}

TEST_P(CopyTest, EveryFailureOfACopyToANewFileLeavesNothingBehind) {
    for (const FaultPlan::Mode mode : AllModes) {
        const int failures =
            forEachFault(mode, {.prepare =
                                    [this](FaultyProvider& provider) {
                                        provider.createFolder(m_folder);
                                        write(provider, m_source, "new content");
                                        provider.habits().mostAtOnce = 4;
                                    },
                                .operation =
                                    [this](FaultyProvider& provider) {
                                        GetParam() ? provider.copyFileAtomic(m_source, m_target)
                                                   : provider.copyFile(m_source, m_target);
                                    },
                                .check =
                                    [&](FaultyProvider& provider, bool threw) {
                                        EXPECT_EQ(provider.bytesOf(m_source), "new content");
                                        if (provider.fileExists(m_target)) {
                                            EXPECT_EQ(provider.bytesOf(m_target), "new content");
                                        }
                                        EXPECT_TRUE(threw || provider.fileExists(m_target));
                                        if (mode == FaultPlan::Mode::Once || mode == FaultPlan::Mode::Foreign) {
                                            EXPECT_EQ(namesIn(provider).size(), threw ? 1U : 2U);
                                        }
                                    }});
        EXPECT_GE(failures, 11);
    }
}

}  // namespace
}  // namespace foundation::test
