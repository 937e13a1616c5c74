#include "provider/ProviderTest.h"

#include "JavaProvider.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

void ProviderTest::SetUp() {
    RecordedJvmTest::SetUp();
    script::reset(env());
    handle = std::make_shared<FakeJVM>(jvm());
}

void ProviderTest::TearDown() {
    script::reset(env());
    RecordedJvmTest::TearDown();
}

jobject ProviderTest::newBackEnd() const {
    const JniRecorder::Unrecorded unrecorded;
    return newObject(env(), ScriptedProviderClass);
}

std::unique_ptr<IProvider> ProviderTest::makeProvider() {
    const JniRecorder::Unrecorded unrecorded;
    jobject backEnd = newBackEnd();
    auto provider = std::make_unique<JavaProvider>(handle, backEnd);
    env()->DeleteLocalRef(backEnd);
    return provider;
}

}  // namespace storage::javaprovider::test
