#include "floor/FloorEvents.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "floor/FloorJava.h"
#include "floor/FloorProvider.h"

namespace bench {

namespace {

int toKind(std::u16string_view word) {
    constexpr std::u16string_view Added = u"ChildAdded";
    constexpr std::u16string_view Words[] = {u"ChildModified", u"ChildRemoved", u"SelfModified", u"SelfRemoved"};
    constexpr int Kinds[] = {3, 4, 0, 1};
    if (word == Added) {
        return 2;
    }
    for (std::size_t i = 0; i < std::size(Words); ++i) {
        if (word == Words[i]) {
            return Kinds[i];
        }
    }
    throw std::runtime_error("unknown kind");
}

int toEntryType(std::u16string_view word) {
    if (word == u"File") {
        return 0;
    }
    if (word == u"Folder") {
        return 1;
    }
    throw std::runtime_error("unknown entry type");
}

void JNICALL publish(JNIEnv* env, jobject /*self*/, jlong handle, jstring kind, jstring watched, jstring changed,
                     jstring entryType, jstring originId) {
    const std::u16string kindWord = FloorJava::textOf(env, kind);
    const std::u16string watchedText = FloorJava::textOf(env, watched);
    const std::u16string changedText = FloorJava::textOf(env, changed);
    const std::u16string typeWord = FloorJava::textOf(env, entryType);
    const std::u16string origin = FloorJava::textOf(env, originId);
    boost::property_tree::ptree details;
    details.push_back({"originId", boost::property_tree::ptree(narrow(origin))});
    const int type = toEntryType(typeWord);
    const auto& events = *reinterpret_cast<const FloorEvents*>(handle);
    events.callback()(toKind(kindWord), watchedText, changedText, type, std::move(details));
}

}  // namespace

FloorEvents::FloorEvents(const Machine& machine, Callback callback)
    : m_callback(std::move(callback)), m_publisher(nullptr) {
    JNIEnv* env = machine.env();
    jclass cls = machine.holdClass("com/corvallen/storage/provider/FloorPublisher");
    // JNI's table wants mutable text that it does not change.
    const JNINativeMethod method = {
        const_cast<char*>("nativePublish"),
        const_cast<char*>(
            "(JLjava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;)V"),
        reinterpret_cast<void*>(&publish)};
    if (env->RegisterNatives(cls, &method, 1) != JNI_OK) {
        throw std::runtime_error("the floor's native method is refused");
    }
    jobject made = env->NewObject(cls, env->GetMethodID(cls, "<init>", "(J)V"), reinterpret_cast<jlong>(this));
    m_publisher = env->NewGlobalRef(made);
    env->DeleteLocalRef(made);
    env->DeleteGlobalRef(cls);
}

}  // namespace bench
