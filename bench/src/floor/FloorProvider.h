#pragma once

#include <boost/any.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "floor/FloorJava.h"

namespace bench {

/// The operations of a provider as a careful engineer would write them for this one back end: the same JNI calls in the
/// same order as the library has to make, the same results, and nothing else.
///
/// Locations come as the text that Java gets, times as Java's milliseconds. Where an operation leaves references to
/// the local frame it brings a frame of its own. Used on one thread.
class FloorProvider {
public:
    struct FileAttributes {
        std::uint64_t size;
        boost::posix_time::ptime lastModified;
        bool writable;
    };
    struct Entry {
        std::u16string name;
        std::int32_t type;
    };

    explicit FloorProvider(JNIEnv* env);

    [[nodiscard]] const FloorJava& java() const noexcept { return m_java; }

    [[nodiscard]] bool fileExists(std::u16string_view location) const;
    void createFile(std::u16string_view location) const { callVoid(m_createFile, location); }
    void removeFile(std::u16string_view location) const { callVoid(m_removeFile, location); }
    void moveFile(std::u16string_view source, std::u16string_view destination, bool replace) const;
    [[nodiscard]] FileAttributes getFileAttributes(std::u16string_view location) const;
    void setLastModified(std::u16string_view location, jlong millis) const;
    [[nodiscard]] std::map<std::string, boost::any> getExtendedAttributes(std::u16string_view location) const;
    /// Capacity and occupied space.
    [[nodiscard]] std::pair<std::uint64_t, std::uint64_t> getProviderStorageInfo(std::u16string_view location) const;
    [[nodiscard]] std::vector<Entry> listAll(std::u16string_view location) const;

private:
    void callVoid(jmethodID method, std::u16string_view location) const;
    [[nodiscard]] std::pair<std::string, std::string> readAttribute(jobject attribute, jmethodID getName,
                                                                    jmethodID getValue) const;
    [[nodiscard]] std::map<std::string, boost::any> readAttributes(jobject attributes) const;
    void readEntry(jobjectArray listing, jsize index, jmethodID getName, jmethodID isFolder,
                   std::vector<Entry>& entries) const;

    FloorJava m_java;
    jclass m_entryClass;
    jmethodID m_fileExists;
    jmethodID m_createFile;
    jmethodID m_removeFile;
    jmethodID m_moveFile;
    jmethodID m_getFileAttributes;
    jmethodID m_setLastModified;
    jmethodID m_getExtendedAttributes;
    jmethodID m_getProviderStorageInfo;
    jmethodID m_listFolder;
};

/// ASCII text as narrow text.
[[nodiscard]] std::string narrow(const std::u16string& text);

}  // namespace bench
