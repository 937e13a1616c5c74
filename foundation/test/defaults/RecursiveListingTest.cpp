#include <algorithm>
#include <stdexcept>

#include "ListingTest.h"

namespace foundation::test {
namespace {

using storage::provider::ExtendedAttributes;
using storage::provider::IFolderEntryIterator;

class RecursiveListingTest : public ListingTest {
protected:
    void SetUp() override {
        ListingTest::SetUp();
        m_provider.createFile(m_folder.getChild(u"a"));
        m_provider.createFolder(m_b);
        m_provider.createFolder(m_bx);
        m_provider.createFile(m_bx.getChild(u"deep.txt"));
        m_provider.createFile(m_b.getChild(u"y.txt"));
        m_provider.createFolder(m_c);
        m_provider.createFile(m_c.getChild(u"z"));
        m_provider.createFolder(m_folder.getChild(u"empty"));
    }

    /// The walk, with errors in it as their codes.
    static Names restWithErrors(IFolderEntryIterator& entries) {
        Names result;
        while (entries.hasMore()) {
            try {
                entries.advance();
                result.push_back(entries.getCurrent().name());
            } catch (const Exception& error) {
                const auto code = toString(error.code());
                result.push_back(u'!' + std::u16string(code.begin(), code.end()));
            }
        }
        return result;
    }

    /// Makes the listing of a folder fail.
    void refuse(const StorageIRI& location, ErrorCode code) {
        m_provider.setHook([=](std::string_view operation, const StorageIRI& at) {
            if (operation == "listAll" && at == location) {
                throw Exception(code, at);
            }
        });
    }

    void markAsLink(const StorageIRI& location, const std::string& value) {
        m_provider.setExtendedAttributes(location, ExtendedAttributes({{"basic:isSymbolicLink", value}}));
    }

    const StorageIRI m_b = m_folder.getChild(u"b");
    const StorageIRI m_bx = m_b.getChild(u"x");
    const StorageIRI m_c = m_folder.getChild(u"c");
};

TEST_F(RecursiveListingTest, FoldersComeBeforeWhatTheyHoldAndNamesArePaths) {
    EXPECT_EQ(all(m_provider.listAllRecursive(m_folder)),
              (std::vector{file(u"a"), folder(u"b"), folder(u"b/x"), file(u"b/x/deep.txt"), file(u"b/y.txt"),
                           folder(u"c"), file(u"c/z"), folder(u"empty")}));
}

TEST_F(RecursiveListingTest, NamesOnlyListingGivesThePaths) {
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_folder)),
              (Names{u"a", u"b", u"b/x", u"b/x/deep.txt", u"b/y.txt", u"c", u"c/z", u"empty"}));
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_folder, u"?")), (Names{u"a", u"b", u"b/x", u"c", u"c/z"}));
}

TEST_F(RecursiveListingTest, WildcardsApplyToTheLastNameAndFoldersAreWalkedAnyway) {
    EXPECT_EQ(all(m_provider.listAllRecursive(m_folder, u"*.txt")),
              (std::vector{file(u"b/x/deep.txt"), file(u"b/y.txt")}));
    EXPECT_EQ(all(m_provider.listAllRecursive(m_folder, u"x")), std::vector{folder(u"b/x")});
    EXPECT_TRUE(all(m_provider.listAllRecursive(m_folder, u"b/x")).empty());
}

TEST_F(RecursiveListingTest, EmptyFolderHasNothing) {
    EXPECT_FALSE(m_provider.listAllRecursive(m_folder.getChild(u"empty"))->hasMore());
}

TEST_F(RecursiveListingTest, NothingMoreIsPromisedThanThereIs) {
    const auto entries = m_provider.listAllRecursive(m_folder);
    for (int entry = 0; entry < 8; ++entry) {
        EXPECT_TRUE(entries->hasMore()) << entry;
        entries->advance();
    }
    EXPECT_EQ(entries->getCurrent(), folder(u"empty"));
    EXPECT_FALSE(entries->hasMore());
    EXPECT_FALSE(entries->hasMore());
    EXPECT_EQ(entries->getCurrent(), folder(u"empty"));
}

TEST_F(RecursiveListingTest, FolderIsListedWhenItsTurnComes) {
    std::vector<StorageIRI> listed;
    m_provider.setHook([&](std::string_view operation, const StorageIRI& at) {
        if (operation == "listAll") {
            listed.push_back(at);
        }
    });
    const auto entries = m_provider.listAllRecursive(m_folder);
    entries->advance();
    entries->advance();
    EXPECT_EQ(entries->getCurrent(), folder(u"b"));
    EXPECT_EQ(listed, std::vector{m_folder});
    EXPECT_TRUE(entries->hasMore());
    EXPECT_EQ(listed, (std::vector{m_folder, m_b}));
}

TEST_F(RecursiveListingTest, AwkwardNamesAreWalked) {
    const std::u16string awkward = u"50% #1?*/\U0001F600";
    m_provider.createFolder(m_c.getChild(awkward));
    m_provider.createFile(m_c.getChild(awkward).getChild(awkward));
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_c)), (Names{awkward, awkward + u'/' + awkward, u"z"}));
}

TEST_F(RecursiveListingTest, MissingFolderIsReportedAtOnce) {
    const StorageIRI missing = m_folder.getChild(u"missing");
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listAllRecursive(missing); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listAllRecursive(missing, u"*"); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listAllRecursiveNamesOnly(missing); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listAllRecursiveNamesOnly(missing, u"*"); });
}

TEST_F(RecursiveListingTest, FileIsNotAFolder) {
    const StorageIRI file = m_folder.getChild(u"a");
    expectError(ErrorCode::NotAFolder, file, [&] { (void)m_provider.listAllRecursive(file); });
}

TEST_F(RecursiveListingTest, LinkToAFolderIsGivenAndNotEntered) {
    markAsLink(m_b, "true");
    EXPECT_EQ(all(m_provider.listAllRecursive(m_folder)),
              (std::vector{file(u"a"), folder(u"b"), folder(u"c"), file(u"c/z"), folder(u"empty")}));
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_folder, u"x")), Names());
}

TEST_F(RecursiveListingTest, LinkAtTheBeginningIsEntered) {
    markAsLink(m_b, "true");
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_b)), (Names{u"x", u"x/deep.txt", u"y.txt"}));
}

TEST_F(RecursiveListingTest, FolderThatIsNoLinkIsEntered) {
    markAsLink(m_b, "false");
    m_provider.setExtendedAttributes(m_c, ExtendedAttributes({{"basic:isSymbolicLink", true}}));  // not a text
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_folder)).size(), 8U);
}

TEST_F(RecursiveListingTest, FoldersAloneAreAskedOfLinksWhenTheirTurnComes) {
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    const auto entries = m_provider.listAllRecursive(m_folder);
    entries->advance();
    entries->advance();
    EXPECT_EQ(m_provider.plan().operations(), std::vector<std::string>{"listAll"});
    (void)rest(*entries);
    const auto& operations = m_provider.plan().operations();
    EXPECT_EQ(std::count(operations.begin(), operations.end(), "getExtendedAttributes"), 4);
    EXPECT_EQ(std::count(operations.begin(), operations.end(), "listAll"), 5);
}

TEST_F(RecursiveListingTest, BackEndWithoutExtendedAttributesIsAskedOnce) {
    int asked = 0;
    m_provider.setHook([&asked](std::string_view operation, const StorageIRI& at) {
        if (operation == "getExtendedAttributes") {
            ++asked;
            throw Exception(ErrorCode::NotSupported, at);
        }
    });
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_folder)).size(), 8U);
    EXPECT_EQ(asked, 1);
}

TEST_F(RecursiveListingTest, FolderThatCannotBeAskedIsEntered) {
    m_provider.setHook([](std::string_view operation, const StorageIRI& at) {
        if (operation == "getExtendedAttributes") {
            throw Exception(ErrorCode::AccessDenied, at);
        }
    });
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_folder)).size(), 8U);
    m_provider.setHook([](std::string_view operation, const StorageIRI&) {
        if (operation == "getExtendedAttributes") {
            throw std::runtime_error("foreign");
        }
    });
    EXPECT_EQ(all(m_provider.listAllRecursiveNamesOnly(m_folder)).size(), 8U);
}

TEST_F(RecursiveListingTest, FolderThatVanishesIsPassedOver) {
    const auto entries = m_provider.listAllRecursive(m_folder);
    entries->advance();
    entries->advance();
    m_provider.removeFolderRecursive(m_b);
    EXPECT_EQ(rest(*entries), (std::vector{folder(u"c"), file(u"c/z"), folder(u"empty")}));
}

TEST_F(RecursiveListingTest, FolderThatBecomesAFileIsPassedOver) {
    const auto entries = m_provider.listAllRecursive(m_folder);
    entries->advance();
    entries->advance();
    m_provider.removeFolderRecursive(m_b);
    m_provider.createFile(m_b);
    EXPECT_EQ(rest(*entries), (std::vector{folder(u"c"), file(u"c/z"), folder(u"empty")}));
}

TEST_F(RecursiveListingTest, LastFolderThatVanishesLeavesNoPromise) {
    const auto entries = m_provider.listAllRecursive(m_b, u"x");
    entries->advance();
    EXPECT_FALSE(entries->hasMore());
    const auto folders = m_provider.listAllRecursive(m_folder);
    for (int entry = 0; entry < 8; ++entry) {
        folders->advance();
    }
    m_provider.removeFolder(m_folder.getChild(u"empty"));
    EXPECT_FALSE(folders->hasMore());
}

TEST_F(RecursiveListingTest, RefusedFolderIsAnErrorAndTheWalkGoesOn) {
    refuse(m_b, ErrorCode::AccessDenied);
    const auto entries = m_provider.listAllRecursive(m_folder);
    EXPECT_EQ(restWithErrors(*entries), (Names{u"a", u"b", u"!AccessDenied", u"c", u"c/z", u"empty"}));
}

TEST_F(RecursiveListingTest, RefusalDeeperDownLeavesTheRestOfItsFolder) {
    refuse(m_bx, ErrorCode::Unavailable);
    const auto entries = m_provider.listAllRecursive(m_folder);
    EXPECT_EQ(restWithErrors(*entries),
              (Names{u"a", u"b", u"b/x", u"!Unavailable", u"b/y.txt", u"c", u"c/z", u"empty"}));
}

TEST_F(RecursiveListingTest, RefusalPassesThroughWildcards) {
    refuse(m_b, ErrorCode::AccessDenied);
    const auto entries = m_provider.listAllRecursive(m_folder, u"z");
    EXPECT_EQ(restWithErrors(*entries), (Names{u"!AccessDenied", u"c/z"}));
}

TEST_F(RecursiveListingTest, RefusalAtTheEndIsPromisedAndTold) {
    refuse(m_folder.getChild(u"empty"), ErrorCode::AccessDenied);
    const auto entries = m_provider.listAllRecursive(m_folder, u"empty");
    entries->advance();
    EXPECT_TRUE(entries->hasMore());
    expectError(ErrorCode::AccessDenied, m_folder.getChild(u"empty"), [&] { entries->advance(); });
    EXPECT_EQ(entries->getCurrent(), folder(u"empty"));
    EXPECT_FALSE(entries->hasMore());
}

TEST_F(RecursiveListingTest, CloneMovesOnItsOwn) {
    const auto entries = m_provider.listAllRecursive(m_folder);
    for (int entry = 0; entry < 4; ++entry) {
        entries->advance();
    }
    EXPECT_EQ(entries->getCurrent(), file(u"b/x/deep.txt"));
    const std::unique_ptr<IFolderEntryIterator> clone(entries->clone());
    const std::vector expected{file(u"b/y.txt"), folder(u"c"), file(u"c/z"), folder(u"empty")};
    EXPECT_EQ(rest(*entries), expected);
    EXPECT_EQ(clone->getCurrent(), file(u"b/x/deep.txt"));
    EXPECT_EQ(rest(*clone), expected);
}

TEST_F(RecursiveListingTest, CloneAtAFolderWalksItToo) {
    auto entries = m_provider.listAllRecursiveNamesOnly(m_folder);
    entries->advance();
    entries->advance();
    EXPECT_EQ(entries->getCurrent(), u"b");
    const std::unique_ptr<storage::provider::IFolderNameIterator> clone(entries->clone());
    entries.reset();
    EXPECT_EQ(rest(*clone), (Names{u"b/x", u"b/x/deep.txt", u"b/y.txt", u"c", u"c/z", u"empty"}));
}

TEST_F(RecursiveListingTest, CloneHasTheErrorThatIsToCome) {
    refuse(m_b, ErrorCode::AccessDenied);
    const auto entries = m_provider.listAllRecursive(m_folder);
    entries->advance();
    entries->advance();
    EXPECT_TRUE(entries->hasMore());
    const std::unique_ptr<IFolderEntryIterator> clone(entries->clone());
    const Names expected{u"!AccessDenied", u"c", u"c/z", u"empty"};
    EXPECT_EQ(restWithErrors(*entries), expected);
    EXPECT_EQ(restWithErrors(*clone), expected);
}

}  // namespace
}  // namespace foundation::test
