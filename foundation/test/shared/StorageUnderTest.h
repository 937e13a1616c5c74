#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/storage/provider/IProvider.h"

namespace foundation::test {

/// A storage of one back end while a test runs; what was made for it goes with it.
class StorageUnderTest {
public:
    virtual ~StorageUnderTest() = default;

    [[nodiscard]] virtual const storage::provider::IProvider& provider() const = 0;
    /// A folder that is empty at first and is no root.
    [[nodiscard]] virtual storage::provider::StorageIRI folder() const = 0;

    StorageUnderTest(const StorageUnderTest&) = delete;
    StorageUnderTest& operator=(const StorageUnderTest&) = delete;

protected:
    StorageUnderTest() = default;
};

/// A kind of storage that the shared tests run on.
struct StorageKind {
    std::string name;
    std::function<std::unique_ptr<StorageUnderTest>()> make;
};

/// The kinds that a test program has; each program that is made of the shared tests defines it. Called before main()
/// has done anything, so making a storage is left to the test.
[[nodiscard]] std::vector<StorageKind> storageKinds();

}  // namespace foundation::test
