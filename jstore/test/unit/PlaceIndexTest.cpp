#include "watch/PlaceIndex.h"

#include <gtest/gtest.h>

namespace jstore {

using foundation::storage::provider::StorageIRI;

namespace {

TEST(PlaceIndexTest, SpellingDoesNotMatter) {
    PlaceIndex places;
    places.add(StorageIRI(u"java:///a/\u00E4 b"), 7);
    EXPECT_EQ(places.find(StorageIRI(u"java:///a/\u00E4 b")), 7U);
    EXPECT_EQ(places.find(StorageIRI(u"java:///a/%C3%A4%20b")), 7U);
    EXPECT_EQ(places.find(StorageIRI(u"java:///x/../a/%C3%A4%20b/")), 7U);
    EXPECT_EQ(places.find(StorageIRI(u"java:///a")), std::nullopt);
    EXPECT_EQ(places.find(StorageIRI()), std::nullopt);
}

TEST(PlaceIndexTest, FirstOfTheSamePlacesCounts) {
    PlaceIndex places;
    places.add(StorageIRI(u"java:///a/"), 0);
    places.add(StorageIRI(u"java:///a"), 1);
    EXPECT_EQ(places.find(StorageIRI(u"java:///a")), 0U);
}

TEST(PlaceIndexTest, EachOfManyIsFound) {
    PlaceIndex places;
    for (std::size_t number = 0; number < 2'000; ++number) {
        places.add(StorageIRI(u"java:///a").getChild(std::u16string(number, u'x') + u"y"), number);
    }
    for (std::size_t number = 0; number < 2'000; ++number) {
        EXPECT_EQ(places.find(StorageIRI(u"java:///a").getChild(std::u16string(number, u'x') + u"y")), number);
    }
}

}  // namespace

}  // namespace jstore
