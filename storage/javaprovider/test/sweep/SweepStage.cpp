#include "sweep/SweepStage.h"

#include "JavaProvider.h"
#include "provider/Script.h"
#include "support/JavaHelpers.h"
#include "support/JniRecorder.h"
#include "sweep/SweepNames.h"

namespace storage::javaprovider::test {

void SweepStage::answerEverything() const {
    script::reset(env);
    const char* const answers = "com/corvallen/storage/test/data/Answers";
    for (const char* question : {"fileExists", "folderExists", "hasFeature"}) {
        script::answer(env, question, true);
    }
    callStaticVoid(env, answers, "fileAttributes", {"7", "1000", "true"});
    callStaticVoid(env, answers, "folderAttributes", {"1000", "true"});
    callStaticVoid(env, answers, "storageInfo", {"10", "3"});
    callStaticVoid(env, answers, "extendedAttributes", {"n=v\nm=w"});
    callStaticVoid(env, answers, "listing", {"a\nB/\nc"});
    callStaticVoid(env, "com/corvallen/storage/test/data/MemoryChannel", "reset");
    callStaticVoid(env, "com/corvallen/storage/test/data/MemoryChannel", "open", {"abcdef"});
}

SweepStage::SweepStage(JNIEnv* environment, const std::shared_ptr<FakeJVM>& machine)
    : env(environment), handle(machine) {
    const JniRecorder::Unrecorded unrecorded;
    env->PushLocalFrame(64);
    callStaticVoid(env, "com/corvallen/storage/test/data/Publishers", "reset");
    answerEverything();
    backEnd = newObject(env, SweptBackEnd);
}

SweepStage::~SweepStage() {
    const JniRecorder::Unrecorded unrecorded;
    env->PopLocalFrame(nullptr);
}

void SweepStage::makeProvider() { provider = std::make_shared<JavaProvider>(handle, backEnd); }

void SweepStage::openStream() { stream = provider->openByteStream(SweptLocation); }

foundation::storage::provider::IConfigurableProvider& SweepStage::configurable() const {
    return dynamic_cast<foundation::storage::provider::IConfigurableProvider&>(*provider);
}

void SweepStage::failNext(const std::string& method, const std::string& kind) const {
    script::failNext(env, method, kind, "java://test/a");
    callStaticVoid(env, "com/corvallen/storage/test/data/MemoryChannel", "failNext", {method, kind, "java://test/a"});
}

void SweepStage::collectPublishers() const {
    callStaticVoid(env, "com/corvallen/storage/test/data/Publishers", "forget");
    callStaticVoid(env, "com/corvallen/storage/test/data/Publishers", "awaitCollection");
}

jstring SweepStage::text(const char16_t* units) const { return javaString(env, units); }

}  // namespace storage::javaprovider::test
