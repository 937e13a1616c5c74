// Path comparison, canonical locations, and the defaults that remain unsupported.
#include <chrono>

#include "DefaultsTest.h"

namespace foundation::test {
namespace {

class PathComparatorTest : public DefaultsTest {
protected:
    [[nodiscard]] int compare(const std::u16string& left, const std::u16string& right) const {
        return m_provider.getPathComparator()(StorageIRI(left), StorageIRI(right));
    }
};

TEST_F(PathComparatorTest, SpellingsOfOneLocationAreEqual) {
    EXPECT_EQ(compare(u"java://mount/a", u"java://mount/a"), 0);
    EXPECT_EQ(compare(u"java://mount/a/b", u"JAVA://mount//a/./c/../b/"), 0);
    EXPECT_EQ(compare(u"java://mount/%61", u"java://mount/a"), 0);
}

TEST_F(PathComparatorTest, LocationsAreOrderedByTheirUnits) {
    EXPECT_LT(compare(u"java://mount/a", u"java://mount/b"), 0);
    EXPECT_GT(compare(u"java://mount/b", u"java://mount/a"), 0);
    EXPECT_LT(compare(u"java://mount/a", u"java://mount/a/b"), 0);
    EXPECT_GT(compare(u"java://mount/\uFFFC", u"java://mount/\U0001F600"), 0);
}

TEST_F(PathComparatorTest, LetterCaseOfNamesCounts) { EXPECT_LT(compare(u"java://mount/A", u"java://mount/a"), 0); }

TEST_F(PathComparatorTest, OutlivesTheProvider) {
    auto provider = std::make_unique<InMemoryProvider>();
    const auto comparator = provider->getPathComparator();
    provider.reset();
    EXPECT_EQ(comparator(m_source, m_source), 0);
}

class CanonicalLocationTest : public DefaultsTest {};

TEST_F(CanonicalLocationTest, LocationIsNormalizedWhateverIsThere) {
    const StorageIRI odd(u"JAVA://mount//missing/./x/../%61/");
    EXPECT_EQ(m_provider.getCanonicalLocation(odd), odd.normalized());
    EXPECT_EQ(m_provider.getCanonicalLocation(odd), StorageIRI(u"java://mount/missing/a"));
    EXPECT_EQ(m_provider.getCanonicalLocation(StorageIRI()), StorageIRI());
}

class RemainingDefaultsTest : public DefaultsTest {};

TEST_F(RemainingDefaultsTest, WhatCannotBeMadeOfOtherOperationsIsNotSupported) {
    expectError(ErrorCode::NotSupported, m_source, [this] { m_provider.setWritable(m_source, true); });
    expectError(ErrorCode::NotSupported, m_source, [this] { (void)m_provider.getFilenameSensitivity(m_source); });
    expectError(ErrorCode::NotSupported, StorageIRI(), [this] { (void)m_provider.getProviderCacheUsage(); });
}

}  // namespace
}  // namespace foundation::test
