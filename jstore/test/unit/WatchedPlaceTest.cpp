#include "watch/WatchedPlace.h"

#include <gtest/gtest.h>

namespace jstore {

using foundation::storage::provider::StorageIRI;

namespace {

WatchedPlace placeAt(const char16_t* text) { return WatchedPlace(Location(StorageIRI(text))); }

TEST(WatchedPlaceTest, WhatIsBelowIsSpelledAsThePlaceIs) {
    const auto place = placeAt(u"java:///./a//\u00E4");
    const auto found = place.find(StorageIRI(u"java:///a/%C3%A4/%F0%9F%9A%80/50%25%20x"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->depth, 2U);
    EXPECT_EQ(found->location.iri(), StorageIRI(u"java:///./a//\u00E4").getChild(u"\U0001F680").getChild(u"50% x"));
}

TEST(WatchedPlaceTest, PlaceItselfIsAsItWasGiven) {
    const auto found = placeAt(u"java:///a/").find(StorageIRI(u"java:///a"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->depth, 0U);
    EXPECT_EQ(found->location.text(), "java:///a/");
}

TEST(WatchedPlaceTest, RootHoldsEverythingOfItsMount) {
    EXPECT_EQ(placeAt(u"java:///").find(StorageIRI(u"java:///x"))->depth, 1U);
    EXPECT_EQ(placeAt(u"java://box").find(StorageIRI(u"java://box/x/y/z"))->depth, 3U);
    EXPECT_FALSE(placeAt(u"java://box/").find(StorageIRI(u"java://other/x")));
}

TEST(WatchedPlaceTest, NeighboursAreNotBelow) {
    const auto place = placeAt(u"java:///a/b");
    EXPECT_FALSE(place.find(StorageIRI(u"java:///a/bc")));
    EXPECT_FALSE(place.find(StorageIRI(u"java:///a")));
    EXPECT_FALSE(place.find(StorageIRI()));
}

}  // namespace

}  // namespace jstore
