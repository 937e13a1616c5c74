#pragma once

#include <boost/any.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "floor/FloorGuard.h"

namespace bench {

/// The operations of a provider as a careful engineer would write them for this one back end: the same JNI calls in the
/// same order as the library has to make, the same results, and only the lookups that were asked for.
///
/// Locations come as the text that Java gets. Used on the thread that made it.
class FloorProvider {
public:
    struct FileAttributes {
        std::uint64_t size;
        boost::posix_time::ptime lastModified;
        bool writable;
    };
    struct FolderAttributes {
        boost::posix_time::ptime lastModified;
        bool writable;
    };
    struct Entry {
        std::u16string name;
        std::int32_t type;
    };

    FloorProvider(const std::shared_ptr<jvm_interface::JVM>& jvm, Lookups lookups);

    [[nodiscard]] const FloorJava& java() const noexcept { return m_java; }

    [[nodiscard]] bool fileExists(std::u16string_view location) const {
        return exists(FloorJava::FileExists, location);
    }
    [[nodiscard]] bool folderExists(std::u16string_view location) const {
        return exists(FloorJava::FolderExists, location);
    }
    void createFile(std::u16string_view location) const { callVoid(FloorJava::CreateFile, location); }
    void createFolder(std::u16string_view location) const { callVoid(FloorJava::CreateFolder, location); }
    void removeFile(std::u16string_view location) const { callVoid(FloorJava::RemoveFile, location); }
    void moveFile(std::u16string_view source, std::u16string_view destination, bool replace) const {
        move(FloorJava::MoveFile, source, destination, replace);
    }
    void moveFolder(std::u16string_view source, std::u16string_view destination, bool replace) const {
        move(FloorJava::MoveFolder, source, destination, replace);
    }
    [[nodiscard]] FileAttributes getFileAttributes(std::u16string_view location) const;
    [[nodiscard]] FolderAttributes getFolderAttributes(std::u16string_view location) const;
    void setLastModified(std::u16string_view location, const boost::posix_time::ptime& time) const;
    [[nodiscard]] std::map<std::string, boost::any> getExtendedAttributes(std::u16string_view location) const;
    /// Capacity and occupied space.
    [[nodiscard]] std::pair<std::uint64_t, std::uint64_t> getProviderStorageInfo(std::u16string_view location) const;
    [[nodiscard]] std::vector<Entry> listAll(std::u16string_view location) const;

    /// Only the existence test, without a guard and with a kept method.
    [[nodiscard]] bool exists(jmethodID method, std::u16string_view location) const;

private:
    [[nodiscard]] bool exists(FloorJava::Method method, std::u16string_view location) const;
    void callVoid(FloorJava::Method method, std::u16string_view location) const;
    void move(FloorJava::Method method, std::u16string_view source, std::u16string_view destination,
              bool replace) const;
    [[nodiscard]] std::pair<std::string, std::string> readAttribute(jobject attribute, jmethodID getName,
                                                                    jmethodID getValue) const;
    [[nodiscard]] std::map<std::string, boost::any> readAttributes(jobject attributes) const;
    void readEntry(jobjectArray listing, jsize index, jmethodID getName, jmethodID isFolder,
                   std::vector<Entry>& entries) const;

    FloorJava m_java;
    jclass m_entryClass;
};

/// ASCII text as narrow text.
[[nodiscard]] std::string narrow(const std::u16string& text);

}  // namespace bench
