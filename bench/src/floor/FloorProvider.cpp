#include "floor/FloorProvider.h"

namespace bench {

namespace {

boost::posix_time::ptime toTime(jlong millis) {
    static const boost::gregorian::date epoch(1970, 1, 1);
    return {epoch, boost::posix_time::time_duration(0, 0, 0, millis * 1000)};
}

jlong toMillis(const boost::posix_time::ptime& time) {
    static const boost::posix_time::ptime epoch(boost::gregorian::date(1970, 1, 1));
    return static_cast<jlong>((time - epoch).total_milliseconds());
}

jclass holdEntryClass(JNIEnv* env) {
    jclass found = env->FindClass("com/corvallen/storage/provider/FolderListEntry");
    auto* held = static_cast<jclass>(env->NewGlobalRef(found));
    env->DeleteLocalRef(found);
    return held;
}

}  // namespace

std::string narrow(const std::u16string& text) {
    std::string result(text.size(), '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        result[i] = static_cast<char>(text[i]);
    }
    return result;
}

FloorProvider::FloorProvider(const std::shared_ptr<jvm_interface::JVM>& jvm, Lookups lookups)
    : m_java(jvm, lookups), m_entryClass(holdEntryClass(m_java.env())) {}

void FloorProvider::callVoid(FloorJava::Method method, std::u16string_view location) const {
    const FloorGuard env(m_java);
    jobject uri = m_java.newUri(location);
    env->CallVoidMethod(m_java.provider(), m_java.method(method), uri);
    m_java.check();
    env->DeleteLocalRef(uri);
}

bool FloorProvider::exists(FloorJava::Method method, std::u16string_view location) const {
    const FloorGuard guard(m_java);
    return exists(m_java.method(method), location);
}

bool FloorProvider::exists(jmethodID method, std::u16string_view location) const {
    JNIEnv* env = m_java.env();
    jobject uri = m_java.newUri(location);
    const jboolean result = env->CallBooleanMethod(m_java.provider(), method, uri);
    m_java.check();
    env->DeleteLocalRef(uri);
    return result != JNI_FALSE;
}

void FloorProvider::move(FloorJava::Method method, std::u16string_view source, std::u16string_view destination,
                         bool replace) const {
    const FloorGuard env(m_java);
    jobject from = m_java.newUri(source);
    jobject to = m_java.newUri(destination);
    env->CallVoidMethod(m_java.provider(), m_java.method(method), from, to, replace ? JNI_TRUE : JNI_FALSE);
    m_java.check();
    env->DeleteLocalRef(to);
    env->DeleteLocalRef(from);
}

FloorProvider::FileAttributes FloorProvider::getFileAttributes(std::u16string_view location) const {
    const FloorGuard env(m_java);
    jobject uri = m_java.newUri(location);
    jobject attributes = env->CallObjectMethod(m_java.provider(), m_java.method(FloorJava::GetFileAttributes), uri);
    m_java.check();
    const bool writable = m_java.readBoolean(attributes, "isWritable");
    const jlong modified = m_java.readLong(attributes, "getLastModified");
    const jlong size = m_java.readLong(attributes, "getSize");
    env->DeleteLocalRef(attributes);
    env->DeleteLocalRef(uri);
    return {static_cast<std::uint64_t>(size), toTime(modified), writable};
}

FloorProvider::FolderAttributes FloorProvider::getFolderAttributes(std::u16string_view location) const {
    const FloorGuard env(m_java);
    jobject uri = m_java.newUri(location);
    jobject attributes = env->CallObjectMethod(m_java.provider(), m_java.method(FloorJava::GetFolderAttributes), uri);
    m_java.check();
    const bool writable = m_java.readBoolean(attributes, "isWritable");
    const jlong modified = m_java.readLong(attributes, "getLastModified");
    env->DeleteLocalRef(attributes);
    env->DeleteLocalRef(uri);
    return {toTime(modified), writable};
}

void FloorProvider::setLastModified(std::u16string_view location, const boost::posix_time::ptime& time) const {
    const FloorGuard env(m_java);
    jobject uri = m_java.newUri(location);
    env->CallVoidMethod(m_java.provider(), m_java.method(FloorJava::SetLastModified), uri, toMillis(time));
    m_java.check();
    env->DeleteLocalRef(uri);
}

std::map<std::string, boost::any> FloorProvider::getExtendedAttributes(std::u16string_view location) const {
    const FloorGuard env(m_java);
    jobject uri = m_java.newUri(location);
    jobject attributes = env->CallObjectMethod(m_java.provider(), m_java.method(FloorJava::GetExtendedAttributes), uri);
    m_java.check();
    auto result = readAttributes(attributes);
    env->DeleteLocalRef(attributes);
    env->DeleteLocalRef(uri);
    return result;
}

std::map<std::string, boost::any> FloorProvider::readAttributes(jobject attributes) const {
    JNIEnv* env = m_java.env();
    jclass cls = env->GetObjectClass(attributes);
    jmethodID getAll = m_java.ask(cls, "getAllAttributes", "()[Lcom/corvallen/storage/provider/ExtendedAttribute;");
    // Left to the frame, as the library does.
    jclass attributeClass = env->FindClass("com/corvallen/storage/provider/ExtendedAttribute");
    jmethodID getName = m_java.ask(attributeClass, "getName", "()Ljava/lang/String;");
    jmethodID getValue = m_java.ask(attributeClass, "getValue", "()Ljava/lang/String;");
    auto* array = static_cast<jobjectArray>(env->CallObjectMethod(attributes, getAll));
    const jsize length = env->GetArrayLength(array);
    std::map<std::string, boost::any> result;
    for (jsize index = 0; index < length; ++index) {
        jobject attribute = env->GetObjectArrayElement(array, index);
        auto [name, value] = readAttribute(attribute, getName, getValue);
        m_java.check();
        result.try_emplace(std::move(name), std::move(value));
        env->DeleteLocalRef(attribute);
    }
    env->DeleteLocalRef(array);
    env->DeleteLocalRef(cls);
    return result;
}

std::pair<std::string, std::string> FloorProvider::readAttribute(jobject attribute, jmethodID getName,
                                                                 jmethodID getValue) const {
    JNIEnv* env = m_java.env();
    auto* name = static_cast<jstring>(env->CallObjectMethod(attribute, getName));
    auto* value = static_cast<jstring>(env->CallObjectMethod(attribute, getValue));
    std::pair<std::string, std::string> result;
    result.first = narrow(m_java.text(name));
    result.second = narrow(m_java.text(value));
    env->DeleteLocalRef(value);
    env->DeleteLocalRef(name);
    return result;
}

std::pair<std::uint64_t, std::uint64_t> FloorProvider::getProviderStorageInfo(std::u16string_view location) const {
    const FloorGuard env(m_java);
    jobject uri = m_java.newUri(location);
    jobject info = env->CallObjectMethod(m_java.provider(), m_java.method(FloorJava::GetProviderStorageInfo), uri);
    m_java.check();
    jclass cls = env->GetObjectClass(info);
    jmethodID getCapacity = m_java.ask(cls, "getStorageCapacity", "()J");
    jmethodID getOccupied = m_java.ask(cls, "getSpaceOccupied", "()J");
    const auto capacity = static_cast<std::uint64_t>(env->CallLongMethod(info, getCapacity));
    const auto occupied = static_cast<std::uint64_t>(env->CallLongMethod(info, getOccupied));
    env->DeleteLocalRef(cls);
    env->DeleteLocalRef(info);
    env->DeleteLocalRef(uri);
    return {capacity, occupied};
}

std::vector<FloorProvider::Entry> FloorProvider::listAll(std::u16string_view location) const {
    const FloorGuard env(m_java);
    jobject uri = m_java.newUri(location);
    auto* listing =
        static_cast<jobjectArray>(env->CallObjectMethod(m_java.provider(), m_java.method(FloorJava::ListFolder), uri));
    m_java.check();
    const jsize length = env->GetArrayLength(listing);
    std::vector<Entry> entries;
    entries.reserve(static_cast<std::size_t>(length));
    if (length > 0) {
        jmethodID getName = m_java.ask(m_entryClass, "getName", "()Ljava/lang/String;");
        jmethodID isFolder = m_java.ask(m_entryClass, "isFolder", "()Z");
        for (jsize index = 0; index < length; ++index) {
            readEntry(listing, index, getName, isFolder, entries);
        }
    }
    env->DeleteLocalRef(listing);
    env->DeleteLocalRef(uri);
    return entries;
}

void FloorProvider::readEntry(jobjectArray listing, jsize index, jmethodID getName, jmethodID isFolder,
                              std::vector<Entry>& entries) const {
    JNIEnv* env = m_java.env();
    jobject element = env->GetObjectArrayElement(listing, index);
    if (env->IsInstanceOf(element, m_entryClass) != JNI_FALSE) {
        auto* name = static_cast<jstring>(env->CallObjectMethod(element, getName));
        const jboolean folder = env->CallBooleanMethod(element, isFolder);
        entries.push_back({m_java.text(name), folder != JNI_FALSE ? 1 : 0});
        env->DeleteLocalRef(name);
    }
    env->DeleteLocalRef(element);
}

}  // namespace bench
