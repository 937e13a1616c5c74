#pragma once

#include <vector>

#include "data/DataTest.h"
#include "data/Listing.h"

namespace storage::javaprovider::test {

/// A test of listings of java://test/a.
class ListingTest : public DataTest {
protected:
    [[nodiscard]] std::vector<Child> all() const { return childrenOf(provider->listAll(location)); }
    [[nodiscard]] std::vector<Child> files() const { return childrenOf(provider->listFiles(location)); }
    [[nodiscard]] std::vector<Child> folders() const { return childrenOf(provider->listFolders(location)); }
    void list() const { static_cast<void>(provider->listAll(location)); }
};

}  // namespace storage::javaprovider::test
