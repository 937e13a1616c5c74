#include "provider/Script.h"

#include "support/JavaHelpers.h"

namespace storage::javaprovider::test::script {

namespace {
constexpr const char* ScriptClass = "com/corvallen/storage/test/Script";
}  // namespace

void reset(JNIEnv* env) { callStaticVoid(env, ScriptClass, "reset"); }

std::vector<std::string> calls(JNIEnv* env) { return callStaticStrings(env, ScriptClass, "calls"); }

int instances(JNIEnv* env) { return callStaticInt(env, ScriptClass, "instances"); }

void failNext(JNIEnv* env, const std::string& method, const std::string& kind, const std::string& text) {
    callStaticVoid(env, ScriptClass, "failNext", {method, kind, text});
}

void failAlways(JNIEnv* env, const std::string& method, const std::string& kind, const std::string& text) {
    callStaticVoid(env, ScriptClass, "failAlways", {method, kind, text});
}

void answer(JNIEnv* env, const std::string& method, bool value) {
    callStaticVoid(env, ScriptClass, "answerBoolean", {method, value ? "true" : "false"});
}

}  // namespace storage::javaprovider::test::script
