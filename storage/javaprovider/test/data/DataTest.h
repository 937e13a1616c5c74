#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

#include "data/CallLines.h"
#include "data/References.h"
#include "data/Traces.h"
#include "provider/ProviderTest.h"

namespace storage::javaprovider::test {

/// Java objects of the tests of data, by the names JNI knows them by.
namespace fixture {
inline constexpr const char* Answers = "com/corvallen/storage/test/data/Answers";
inline constexpr const char* MemoryChannel = "com/corvallen/storage/test/data/MemoryChannel";
inline constexpr const char* UntypedProvider = "com/corvallen/storage/test/data/UntypedProvider";
}  // namespace fixture

/// A test of a provider over a scripted back end. The recorder knows nothing of its making.
class DataTest : public ProviderTest {
protected:
    void SetUp() override;

    /// From now on `provider` has a back end whose answers may be of any class, and gives a new object of that name.
    void useOddValue(const std::string& name);
    /// The same with an array that holds two entries (file "a", folder "B") between things that are none.
    void useMixedListing();

    /// Has the script answer with values of the contract; see the Java class of that name.
    void answer(const std::string& kind, const std::vector<std::string>& texts) const;

    [[nodiscard]] std::vector<ReferenceNumber> resultsOf(const std::string& pattern) const {
        return test::resultsOf(recorder, pattern);
    }
    [[nodiscard]] std::vector<ReferenceNumber> released() const { return releasedLocals(recorder); }

    const StorageIRI location{u"java://test/a"};
    std::unique_ptr<IProvider> provider;

private:
    void useUntypedBackEnd();
};

}  // namespace storage::javaprovider::test
