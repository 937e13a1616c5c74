#include "data/StreamTest.h"

#include <cstdint>

#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

jlong JNICALL addressOf(JNIEnv* env, jclass /*self*/, jobject buffer) {
    return static_cast<jlong>(reinterpret_cast<std::intptr_t>(env->GetDirectBufferAddress(buffer)));
}

void registerAddressOf(JNIEnv* env) {
    const JniRecorder::Unrecorded unrecorded;
    const JNINativeMethod method = {const_cast<char*>("addressOf"), const_cast<char*>("(Ljava/nio/ByteBuffer;)J"),
                                    reinterpret_cast<void*>(&addressOf)};
    ASSERT_EQ(env->RegisterNatives(findClass(env, fixture::MemoryChannel), &method, 1), JNI_OK);
}

}  // namespace

void StreamTest::SetUp() {
    DataTest::SetUp();
    registerAddressOf(env());
    tell("reset", {});
}

void StreamTest::TearDown() {
    tell("reset", {});
    DataTest::TearDown();
}

jobject StreamTest::channelOver(const std::string& text) const {
    return callStaticObject(env(), fixture::MemoryChannel, "over", {text});
}

std::unique_ptr<ProviderChannelByteStream> StreamTest::streamOver(const std::string& text) {
    std::unique_ptr<ProviderChannelByteStream> stream;
    {
        const JniRecorder::Unrecorded unrecorded;
        stream = std::make_unique<ProviderChannelByteStream>(handle, channelOver(text));
    }
    recorder.clear();
    return stream;
}

void StreamTest::tell(const std::string& what, const std::vector<std::string>& texts) const {
    callStaticVoid(env(), fixture::MemoryChannel, what, texts);
}

}  // namespace storage::javaprovider::test
