#include "BridgeTest.h"

#include <map>

#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

void BridgeTest::SetUp() {
    RecordedJvmTest::SetUp();
    m_guard.emplace(jvm());
    recorder.clear();
}

void BridgeTest::TearDown() {
    m_guard.reset();
    RecordedJvmTest::TearDown();
}

jthrowable BridgeTest::failure(const std::string& kind, const std::u16string& text) {
    const JniRecorder::Unrecorded unrecorded;
    const jclass failures = findClass(env(), "com/corvallen/storage/test/Failures");
    const jmethodID make =
        env()->GetStaticMethodID(failures, "make", "(Ljava/lang/String;Ljava/lang/String;)Ljava/lang/Throwable;");
    const jstring kindText = javaString(env(), std::u16string(kind.begin(), kind.end()));
    const jobject made = env()->CallStaticObjectMethod(failures, make, kindText, javaString(env(), text));
    EXPECT_NE(made, nullptr) << "no failure of the kind " << kind << ": " << takePendingException(env());
    return static_cast<jthrowable>(made);
}

void BridgeTest::raise(jthrowable exception) {
    const JniRecorder::Unrecorded unrecorded;
    ASSERT_EQ(env()->Throw(exception), JNI_OK);
}

bool BridgeTest::isPending(jthrowable exception) const {
    const JniRecorder::Unrecorded unrecorded;
    const jthrowable pending = env()->ExceptionOccurred();
    const bool matches = env()->IsSameObject(pending, exception) == JNI_TRUE;
    env()->DeleteLocalRef(pending);
    return matches;
}

bool BridgeTest::isAnyPending() const {
    const JniRecorder::Unrecorded unrecorded;
    return env()->ExceptionCheck() == JNI_TRUE;
}

std::string BridgeTest::takePending() const { return takePendingException(env()); }

bool BridgeTest::same(jobject left, jobject right) const {
    const JniRecorder::Unrecorded unrecorded;
    return env()->IsSameObject(left, right) == JNI_TRUE;
}

jclass BridgeTest::classNamed(const std::string& name) const { return findClass(env(), name); }

std::vector<std::string> BridgeTest::releases() const {
    std::map<ReferenceNumber, std::string> makers;
    std::vector<std::string> released;
    for (const JniCall& call : recorder.records()) {
        if (call.resultReference != 0) {
            makers[call.resultReference] = call.toString();
        }
        if (call.name() == "DeleteLocalRef") {
            const auto maker = makers.find(call.targetReference);
            released.push_back(maker == makers.end() ? "(made elsewhere)" : maker->second);
        }
    }
    return released;
}

}  // namespace storage::javaprovider::test
