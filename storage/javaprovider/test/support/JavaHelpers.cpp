#include "support/JavaHelpers.h"

#include <new>
#include <stdexcept>

#include "fl/i18n/text.h"

namespace storage::javaprovider::test {

namespace {

/// The scope of one helper: nothing is recorded, and every local reference is released but the one it gives.
class HelperScope {
public:
    explicit HelperScope(JNIEnv* env) : m_env(env) {
        if (env->PushLocalFrame(16) != JNI_OK) {
            throw std::bad_alloc();
        }
    }
    ~HelperScope() {
        if (!m_closed) {
            m_env->PopLocalFrame(nullptr);
        }
    }
    HelperScope(const HelperScope&) = delete;
    HelperScope& operator=(const HelperScope&) = delete;

    /// Throws when an exception is pending.
    void check() const {
        if (const std::string description = takePendingException(m_env); !description.empty()) {
            throw std::runtime_error(description);
        }
    }

    /// Closes the scope; the reference lives on in the caller's frame.
    template <class Reference>
    [[nodiscard]] Reference give(Reference reference) {
        m_closed = true;
        return static_cast<Reference>(m_env->PopLocalFrame(reference));
    }

private:
    JniRecorder::Unrecorded m_unrecorded;
    JNIEnv* m_env;
    bool m_closed = false;
};

std::string nameOfClass(JNIEnv* env, jobject object) {
    jclass clazz = env->GetObjectClass(object);
    const jmethodID getName = env->GetMethodID(env->GetObjectClass(clazz), "getName", "()Ljava/lang/String;");
    const auto name = static_cast<jstring>(env->CallObjectMethod(clazz, getName));
    return env->ExceptionCheck() != JNI_FALSE ? "a class without a name" : utf8(env, name);
}

std::string signatureOf(const std::vector<std::string>& texts, const std::string& result) {
    std::string signature = "(";
    for (std::size_t i = 0; i < texts.size(); ++i) {
        signature += "Ljava/lang/String;";
    }
    return signature + ")" + result;
}

std::vector<jvalue> asArguments(JNIEnv* env, const std::vector<std::string>& texts) {
    std::vector<jvalue> arguments(texts.size() + 1);  // never empty, so that data() is an address
    for (std::size_t i = 0; i < texts.size(); ++i) {
        arguments[i].l = javaString(env, fl::i18n::to_ustring(texts[i]));
    }
    return arguments;
}

/// A static method, found and ready to be called with texts.
struct StaticMethod {
    StaticMethod(HelperScope& scope, JNIEnv* env, const std::string& className, const std::string& method,
                 const std::string& signature)
        : clazz(findClass(env, className)), id(env->GetStaticMethodID(clazz, method.c_str(), signature.c_str())) {
        scope.check();
    }

    jclass clazz;
    jmethodID id;
};

std::vector<std::string> elements(JNIEnv* env, jobjectArray array) {
    std::vector<std::string> texts;
    const jsize length = env->GetArrayLength(array);
    for (jsize i = 0; i < length; ++i) {
        const auto text = static_cast<jstring>(env->GetObjectArrayElement(array, i));
        texts.push_back(text == nullptr ? "(null)" : utf8(env, text));
        env->DeleteLocalRef(text);
    }
    return texts;
}

}  // namespace

jstring javaString(JNIEnv* env, const std::u16string& text) {
    HelperScope scope(env);
    const jstring made = env->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.size()));
    scope.check();
    return scope.give(made);
}

std::u16string utf16(JNIEnv* env, jstring text) {
    if (text == nullptr) {
        return {};
    }
    const JniRecorder::Unrecorded unrecorded;
    std::u16string units(static_cast<std::size_t>(env->GetStringLength(text)), u'\0');
    env->GetStringRegion(text, 0, static_cast<jsize>(units.size()), reinterpret_cast<jchar*>(units.data()));
    return units;
}

std::string utf8(JNIEnv* env, jstring text) { return fl::i18n::to_string(utf16(env, text)); }

jclass findClass(JNIEnv* env, const std::string& name) {
    HelperScope scope(env);
    const jclass found = env->FindClass(name.c_str());
    scope.check();
    return scope.give(found);
}

jobject newObject(JNIEnv* env, const std::string& className) {
    HelperScope scope(env);
    const jclass clazz = findClass(env, className);
    const jmethodID constructor = env->GetMethodID(clazz, "<init>", "()V");
    scope.check();
    const jobject made = env->NewObject(clazz, constructor);
    scope.check();
    return scope.give(made);
}

void callStaticVoid(JNIEnv* env, const std::string& className, const std::string& method,
                    const std::vector<std::string>& texts) {
    HelperScope scope(env);
    const auto arguments = asArguments(env, texts);
    callStaticVoidV(env, className, method, signatureOf(texts, "V"), arguments);
}

void callStaticVoidV(JNIEnv* env, const std::string& className, const std::string& method, const std::string& signature,
                     const std::vector<jvalue>& arguments) {
    HelperScope scope(env);
    const StaticMethod called(scope, env, className, method, signature);
    env->CallStaticVoidMethodA(called.clazz, called.id, arguments.data());
    scope.check();
}

std::string callStaticString(JNIEnv* env, const std::string& className, const std::string& method,
                             const std::vector<std::string>& texts) {
    HelperScope scope(env);
    const StaticMethod called(scope, env, className, method, signatureOf(texts, "Ljava/lang/String;"));
    const jobject result = env->CallStaticObjectMethodA(called.clazz, called.id, asArguments(env, texts).data());
    scope.check();
    return utf8(env, static_cast<jstring>(result));
}

int callStaticInt(JNIEnv* env, const std::string& className, const std::string& method,
                  const std::vector<std::string>& texts) {
    HelperScope scope(env);
    const StaticMethod called(scope, env, className, method, signatureOf(texts, "I"));
    const jint result = env->CallStaticIntMethodA(called.clazz, called.id, asArguments(env, texts).data());
    scope.check();
    return result;
}

jobject callStaticObject(JNIEnv* env, const std::string& className, const std::string& method,
                         const std::vector<std::string>& texts) {
    HelperScope scope(env);
    const StaticMethod called(scope, env, className, method, signatureOf(texts, "Ljava/lang/Object;"));
    const jobject result = env->CallStaticObjectMethodA(called.clazz, called.id, asArguments(env, texts).data());
    scope.check();
    return scope.give(result);
}

std::vector<std::string> callStaticStrings(JNIEnv* env, const std::string& className, const std::string& method,
                                           const std::vector<std::string>& texts) {
    HelperScope scope(env);
    const StaticMethod called(scope, env, className, method, signatureOf(texts, "[Ljava/lang/String;"));
    const jobject result = env->CallStaticObjectMethodA(called.clazz, called.id, asArguments(env, texts).data());
    scope.check();
    return elements(env, static_cast<jobjectArray>(result));
}

std::string takePendingException(JNIEnv* env) {
    const JniRecorder::Unrecorded unrecorded;
    const jthrowable thrown = env->ExceptionOccurred();
    if (thrown == nullptr) {
        return {};
    }
    env->ExceptionClear();
    HelperScope scope(env);
    const jmethodID toString = env->GetMethodID(env->GetObjectClass(thrown), "toString", "()Ljava/lang/String;");
    const auto text = static_cast<jstring>(env->CallObjectMethod(thrown, toString));
    if (env->ExceptionCheck() != JNI_FALSE) {
        env->ExceptionClear();  // a toString() that throws says nothing; the class's name will do
    }
    std::string description = utf8(env, text);
    if (description.empty()) {
        description = nameOfClass(env, thrown);
    }
    env->DeleteLocalRef(thrown);
    return description;
}

bool isAttached(JavaVM* vm) {
    void* env = nullptr;
    return vm->GetEnv(&env, JNI_VERSION_1_8) == JNI_OK;
}

}  // namespace storage::javaprovider::test
