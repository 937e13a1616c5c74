#include "floor/FloorJava.h"

#include <iterator>
#include <stdexcept>
#include <utility>

#define BENCH_URI "Lcom/corvallen/storage/provider/StorageURI;"
#define BENCH_CONTRACT "Lcom/corvallen/storage/provider/"

namespace bench {

namespace {

constexpr FloorMethods<FloorJava::MethodCount>::Names Names = {"fileExists",
                                                               "folderExists",
                                                               "createFile",
                                                               "createFolder",
                                                               "removeFile",
                                                               "removeFolder",
                                                               "removeFolderRecursively",
                                                               "hasFeature",
                                                               "moveFile",
                                                               "moveFolder",
                                                               "getFileAttributes",
                                                               "getFolderAttributes",
                                                               "setLastModified",
                                                               "listFolder",
                                                               "getChannel",
                                                               "getReadOnlyChannel",
                                                               "publishEventsFor",
                                                               "stopPublishingEventsFor",
                                                               "dispose",
                                                               "getExtendedAttributes",
                                                               "getProviderStorageInfo",
                                                               "configure"};

constexpr const char* Signatures[] = {
    "(" BENCH_URI ")Z",
    "(" BENCH_URI ")Z",
    "(" BENCH_URI ")V",
    "(" BENCH_URI ")V",
    "(" BENCH_URI ")V",
    "(" BENCH_URI ")V",
    "(" BENCH_URI ")V",
    "(" BENCH_CONTRACT "ExtendedFeature;)Z",
    "(" BENCH_URI BENCH_URI "Z)V",
    "(" BENCH_URI BENCH_URI "Z)V",
    "(" BENCH_URI ")" BENCH_CONTRACT "FileAttributes;",
    "(" BENCH_URI ")" BENCH_CONTRACT "FolderAttributes;",
    "(" BENCH_URI "J)V",
    "(" BENCH_URI ")[" BENCH_CONTRACT "FolderListEntry;",
    "(" BENCH_URI "ZZZ)" BENCH_CONTRACT "ProviderChannel;",
    "(" BENCH_URI ")" BENCH_CONTRACT "ProviderChannel;",
    "(" BENCH_URI BENCH_CONTRACT "EventPublisher;)V",
    "(" BENCH_URI ")V",
    "()V",
    "(" BENCH_URI ")" BENCH_CONTRACT "ExtendedAttributes;",
    "(" BENCH_URI ")" BENCH_CONTRACT "ProviderStorageInfo;",
    "(Ljava/util/HashMap;)V",
};
static_assert(std::size(Signatures) == Names.size());

}  // namespace

FloorJava::FloorJava(std::shared_ptr<jvm_interface::JVM> jvm, Lookups lookups)
    : m_jvm(std::move(jvm)),
      m_lookups(lookups),
      m_env(environmentOf(m_jvm->getJavaVM())),
      m_uriClass(hold("com/corvallen/storage/provider/StorageURI")),
      m_provider(nullptr),
      m_methods(lookups, Names) {
    jclass cls = hold("com/corvallen/bench/IdleProvider");
    for (std::size_t i = 0; i < MethodCount; ++i) {
        m_methods.set(i, m_env->GetMethodID(cls, Names[i], Signatures[i]));
        check();
    }
    jobject made = m_env->NewObject(cls, m_env->GetMethodID(cls, "<init>", "()V"));
    check();
    m_provider = m_env->NewGlobalRef(made);
    m_env->DeleteLocalRef(made);
    m_env->DeleteGlobalRef(cls);
}

jclass FloorJava::hold(const char* name) const {
    jclass found = m_env->FindClass(name);
    check();
    auto* held = static_cast<jclass>(m_env->NewGlobalRef(found));
    m_env->DeleteLocalRef(found);
    return held;
}

jmethodID FloorJava::ask(jclass cls, const char* name, const char* signature) const {
    if (m_lookups == Lookups::Kept) {
        return m_env->GetMethodID(cls, name, signature);
    }
    // The library's lookup takes strings.
    const std::string nameText(name);
    const std::string signatureText(signature);
    return m_env->GetMethodID(cls, nameText.c_str(), signatureText.c_str());
}

jobject FloorJava::newUri(std::u16string_view text) const {
    jmethodID constructor = m_env->GetMethodID(m_uriClass, "<init>", "(Ljava/lang/String;)V");
    jstring string = m_env->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.size()));
    jobject uri = m_env->NewObject(m_uriClass, constructor, string);
    m_env->DeleteLocalRef(string);
    return uri;
}

void FloorJava::check() const {
    if (m_env->ExceptionCheck() == JNI_FALSE) {
        return;
    }
    m_env->ExceptionClear();
    throw std::runtime_error("the floor met a Java exception");
}

std::u16string FloorJava::textOf(JNIEnv* env, jstring value) {
    const jchar* chars = env->GetStringChars(value, nullptr);
    std::u16string text(reinterpret_cast<const char16_t*>(chars));
    env->ReleaseStringChars(value, chars);
    return text;
}

jlong FloorJava::readLong(jobject object, const char* getter) const {
    jclass cls = m_env->GetObjectClass(object);
    const jlong value = m_env->CallLongMethod(object, ask(cls, getter, "()J"));
    m_env->DeleteLocalRef(cls);
    return value;
}

bool FloorJava::readBoolean(jobject object, const char* getter) const {
    jclass cls = m_env->GetObjectClass(object);
    const jboolean value = m_env->CallBooleanMethod(object, ask(cls, getter, "()Z"));
    m_env->DeleteLocalRef(cls);
    return value != JNI_FALSE;
}

}  // namespace bench
