#pragma once

#include <boost/date_time/posix_time/posix_time.hpp>

#include <array>
#include <ostream>
#include <string>
#include <string_view>

#include "foundation/storage/provider/IProvider.h"

namespace storage::javaprovider::test {

/// One operation, as it is called in the framework and arrives in Java.
struct DataOperation {
    using StorageIRI = foundation::storage::provider::StorageIRI;
    using IProvider = foundation::storage::provider::IProvider;

    const char* name;
    const char* javaMethod;
    const char* jniCall;
    bool traced;
    void (*run)(const IProvider&, const StorageIRI&);

    [[nodiscard]] std::string pattern() const { return std::string(jniCall) + " " + javaMethod; }
    /// Whether Java gives an object, which must be released.
    [[nodiscard]] bool givesObject() const { return std::string_view(jniCall) == "CallObjectMethod"; }

    friend void PrintTo(const DataOperation& operation, std::ostream* out) { *out << operation.name; }
};

/// The operations that fetch something from Java, and the one that sets a time.
inline constexpr std::array<DataOperation, 10> DataOperations = {{
    {"getFileAttributes", "getFileAttributes", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.getFileAttributes(a)); }},
    {"getFolderAttributes", "getFolderAttributes", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.getFolderAttributes(a)); }},
    {"setLastModified", "setLastModified", "CallVoidMethod", true,
     [](auto& p, auto& a) { p.setLastModified(a, boost::posix_time::ptime()); }},
    {"getExtendedAttributes", "getExtendedAttributes", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.getExtendedAttributes(a)); }},
    {"getProviderStorageInfo", "getProviderStorageInfo", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.getProviderStorageInfo(a)); }},
    {"listAll", "listFolder", "CallObjectMethod", true, [](auto& p, auto& a) { static_cast<void>(p.listAll(a)); }},
    {"listFiles", "listFolder", "CallObjectMethod", true, [](auto& p, auto& a) { static_cast<void>(p.listFiles(a)); }},
    {"listFolders", "listFolder", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.listFolders(a)); }},
    {"openByteStream", "getChannel", "CallObjectMethod", false,
     [](auto& p, auto& a) { static_cast<void>(p.openByteStream(a)); }},
    {"openReadOnlyByteStream", "getReadOnlyChannel", "CallObjectMethod", false,
     [](auto& p, auto& a) { static_cast<void>(p.openReadOnlyByteStream(a)); }},
}};

}  // namespace storage::javaprovider::test
