#include "sweep/SweepStage.h"

#include <cstddef>
#include <vector>

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

std::string SweepStage::told(const std::function<void()>& action) const {
    const std::size_t before = script::calls(env).size();
    action();
    const std::vector<std::string> calls = script::calls(env);
    std::string text;
    for (std::size_t i = before; i < calls.size(); ++i) {
        text += (text.empty() ? "" : "; ") + calls[i];
    }
    return text;
}

bool SweepStage::gavePublisher() const {
    const auto numbers = callStaticStrings(env, "com/corvallen/storage/test/data/Publishers", "numbers");
    return !numbers.empty() && numbers.back() != "null";
}

jstring SweepStage::text(const char16_t* units) const { return javaString(env, units); }

}  // namespace storage::javaprovider::test
