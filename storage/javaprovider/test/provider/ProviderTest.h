#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/storage/provider/IProvider.h"
#include "provider/Script.h"
#include "support/FakeJVM.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;
using foundation::storage::provider::StorageIRI;

/// The back end of most tests, with slashes.
inline constexpr const char* ScriptedProviderClass = "com/corvallen/storage/test/ScriptedProvider";

/// The name of a class among the test's own, with slashes.
[[nodiscard]] inline std::string testClass(const char* name) {
    return std::string("com/corvallen/storage/test/") + name;
}

/// A test with scripted back ends, a recorder, and a handle that can lose its machine.
///
/// After each test it fails the test when an operation left a local reference to its frame that is not left on purpose.
class ProviderTest : public RecordedJvmTest {
protected:
    void SetUp() override;
    void TearDown() override;

    /// A new scripted back end; a local reference that the recorder does not know.
    [[nodiscard]] jobject newBackEnd() const;
    /// A provider over a new scripted back end. Nothing of its making is left in the recorder.
    [[nodiscard]] std::unique_ptr<IProvider> makeProvider();

    /// Expects that the recorded calls begin with the search for the scripted class, its constructor, and the making of
    /// a provider over the new object.
    void expectClassFoundInstantiatedAndHandedOver() const;

    [[nodiscard]] std::vector<std::string> javaCalls() const { return script::calls(env()); }

    /// From now on, operations of this test may leave to their frames local references made by calls that begin like
    /// this. Those that operations always leave are known.
    void mayLeave(const std::string& call) { m_mayBeLeft.push_back(call); }

    std::shared_ptr<FakeJVM> handle;

private:
    void expectNothingElseLeftToFrames();

    std::vector<std::string> m_mayBeLeft;
};

}  // namespace storage::javaprovider::test
