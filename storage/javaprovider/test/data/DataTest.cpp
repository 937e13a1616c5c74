#include "data/DataTest.h"

#include <array>

#include "JavaProvider.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

/// The native methods of UntypedProvider: they return the answer set on the Java side, of whatever class.
jobject JNICALL anyAnswer(JNIEnv* env, jobject self, jobject /*location*/) {
    const JniRecorder::Unrecorded unrecorded;
    jclass cls = env->GetObjectClass(self);
    jmethodID answer = env->GetStaticMethodID(cls, "answer", "()Ljava/lang/Object;");
    return env->CallStaticObjectMethod(cls, answer);
}

JNINativeMethod nativeMethod(const char* name, const char* signature) {
    return {const_cast<char*>(name), const_cast<char*>(signature), reinterpret_cast<void*>(&anyAnswer)};
}

void registerUntypedMethods(JNIEnv* env) {
    const std::array methods = {
        nativeMethod("getFileAttributes",
                     "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/FileAttributes;"),
        nativeMethod("getFolderAttributes",
                     "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/FolderAttributes;"),
        nativeMethod("listFolder",
                     "(Lcom/corvallen/storage/provider/StorageURI;)[Lcom/corvallen/storage/provider/FolderListEntry;"),
        nativeMethod(
            "getExtendedAttributes",
            "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/ExtendedAttributes;"),
        nativeMethod(
            "getProviderStorageInfo",
            "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/ProviderStorageInfo;"),
    };
    const auto count = static_cast<jint>(methods.size());
    ASSERT_EQ(env->RegisterNatives(findClass(env, fixture::UntypedProvider), methods.data(), count), JNI_OK);
}

}  // namespace

void DataTest::SetUp() {
    ProviderTest::SetUp();
    provider = makeProvider();
    recorder.clear();
}

void DataTest::useOddValue(const std::string& name) {
    useUntypedBackEnd();
    callStaticVoid(env(), fixture::UntypedProvider, "answerWithNew", {name});
}

void DataTest::useMixedListing() {
    useUntypedBackEnd();
    callStaticVoid(env(), fixture::UntypedProvider, "answerWithMixedListing");
}

void DataTest::useUntypedBackEnd() {
    {
        const JniRecorder::Unrecorded unrecorded;
        registerUntypedMethods(env());
        provider = std::make_unique<JavaProvider>(handle, newObject(env(), fixture::UntypedProvider));
    }
    script::reset(env());
    recorder.clear();
}

void DataTest::answer(const std::string& kind, const std::vector<std::string>& texts) const {
    callStaticVoid(env(), fixture::Answers, kind, texts);
}

}  // namespace storage::javaprovider::test
