#include "JNIUtilsText.h"

namespace storage::javaprovider {

// JNI's jchar and char16_t are distinct types of one size and meaning.
static_assert(sizeof(jchar) == sizeof(char16_t));

namespace {

/// The characters of a Java string, released even when the copy fails.
class StringChars {
public:
    StringChars(JNIEnv* env, jstring text) : m_env(env), m_text(text), m_chars(env->GetStringChars(text, nullptr)) {}
    ~StringChars() {
        if (m_chars != nullptr) {
            m_env->ReleaseStringChars(m_text, m_chars);
        }
    }
    StringChars(const StringChars&) = delete;
    StringChars& operator=(const StringChars&) = delete;

    [[nodiscard]] const char16_t* get() const noexcept { return reinterpret_cast<const char16_t*>(m_chars); }

private:
    JNIEnv* m_env;
    jstring m_text;
    const jchar* m_chars;
};

}  // namespace

std::u16string jstringToUString(const JNIEnvPtr& env, jstring text) { return jstringToUString(env.get(), text); }

std::u16string jstringToUString(JNIEnv* env, jstring text) {
    if (text == nullptr) {
        return {};
    }
    const StringChars chars(env, text);
    if (chars.get() == nullptr) {
        throwIfOutOfMemory(env);
        return {};
    }
    // The virtual machine ends the characters with a zero unit, so a zero inside the text ends it early.
    return {chars.get()};
}

jstring ustringToJString(const JNIEnvPtr& env, const std::u16string& text) {
    if (text.empty()) {
        return nullptr;
    }
    jstring result = env->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.size()));
    if (result == nullptr) {
        throwIfOutOfMemory(env);
    }
    return result;
}

}  // namespace storage::javaprovider
