#include "hosts/KeptInJava.h"

#include <gtest/gtest.h>

#include <utility>

#include "foundation/storage/provider/IProvider.h"
#include "storage/javaprovider/EntryPoints.h"
#include "storage/jvm/JVMWrapper.h"
#include "support/FixtureNames.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

constexpr const char* Held = "fileExists";

void operateGate(storage::jvm::EmbeddedJVM& jvm, const char* method, std::vector<std::string> arguments = {}) {
    storage::jvm::JVMWrapper wrapper(jvm.getJavaVM());
    arguments.insert(arguments.begin(), Held);
    callStaticVoid(wrapper.getEnv(), fixture::Gate, method, arguments);
}

void askForFile(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm) {
    const std::unique_ptr<foundation::storage::provider::IProvider> provider(
        buildProvider(jvm, fixture::ScriptedProvider));
    EXPECT_FALSE(provider->fileExists(foundation::storage::provider::StorageIRI(u"java://kept")));
}

}  // namespace

KeptInJava::KeptInJava(std::shared_ptr<storage::jvm::EmbeddedJVM> jvm) : m_jvm(std::move(jvm)) {
    operateGate(*m_jvm, "close");
    m_thread = std::thread([jvm = m_jvm] { askForFile(jvm); });
    operateGate(*m_jvm, "awaitWaiting", {"1", "30000"});
}

void KeptInJava::letGo() {
    operateGate(*m_jvm, "open");
    m_thread.join();
}

}  // namespace storage::javaprovider::test
