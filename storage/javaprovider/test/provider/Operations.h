#pragma once

#include <array>
#include <ostream>
#include <string>

#include "foundation/storage/provider/IProvider.h"

namespace storage::javaprovider::test {

/// One operation on files and folders, as it is called in the framework and arrives in Java.
struct Operation {
    using StorageIRI = foundation::storage::provider::StorageIRI;
    using IProvider = foundation::storage::provider::IProvider;

    const char* method;     ///< of the Java object
    const char* signature;  ///< of that method
    const char* jniCall;    ///< the JNI function that calls it
    bool isMove;            ///< takes two locations and a flag
    void (*run)(const IProvider&, const StorageIRI&, const StorageIRI&);

    /// Runs it on java://test/a, and on java://test/b as a move's destination.
    void on(const IProvider& provider) const {
        run(provider, StorageIRI(u"java://test/a"), StorageIRI(u"java://test/b"));
    }
    /// The call as a recorder writes it.
    [[nodiscard]] std::string line() const { return std::string(jniCall) + " " + method + signature; }
    /// The call as the script of the Java object writes it; moves keep what exists.
    [[nodiscard]] std::string javaLine() const {
        return std::string(method) + " java://test/a" + (isMove ? " java://test/b false" : "");
    }

    friend void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.method; }
};

namespace detail {
inline constexpr const char* OfUri = "(Lcom/corvallen/storage/provider/StorageURI;)V";
inline constexpr const char* AskOfUri = "(Lcom/corvallen/storage/provider/StorageURI;)Z";
inline constexpr const char* OfTwoUris =
    "(Lcom/corvallen/storage/provider/StorageURI;Lcom/corvallen/storage/provider/StorageURI;Z)V";
}  // namespace detail

/// The nine operations that create, test, remove and move.
inline constexpr std::array<Operation, 9> Operations = {{
    {"createFile", detail::OfUri, "CallVoidMethod", false, [](auto& p, auto& a, auto&) { p.createFile(a); }},
    {"createFolder", detail::OfUri, "CallVoidMethod", false, [](auto& p, auto& a, auto&) { p.createFolder(a); }},
    {"fileExists", detail::AskOfUri, "CallBooleanMethod", false,
     [](auto& p, auto& a, auto&) { static_cast<void>(p.fileExists(a)); }},
    {"folderExists", detail::AskOfUri, "CallBooleanMethod", false,
     [](auto& p, auto& a, auto&) { static_cast<void>(p.folderExists(a)); }},
    {"removeFile", detail::OfUri, "CallVoidMethod", false, [](auto& p, auto& a, auto&) { p.removeFile(a); }},
    {"moveFile", detail::OfTwoUris, "CallVoidMethod", true, [](auto& p, auto& a, auto& b) { p.moveFile(a, b); }},
    {"removeFolder", detail::OfUri, "CallVoidMethod", false, [](auto& p, auto& a, auto&) { p.removeFolder(a); }},
    {"removeFolderRecursively", detail::OfUri, "CallVoidMethod", false,
     [](auto& p, auto& a, auto&) { p.removeFolderRecursive(a); }},
    {"moveFolder", detail::OfTwoUris, "CallVoidMethod", true, [](auto& p, auto& a, auto& b) { p.moveFolder(a, b); }},
}};

}  // namespace storage::javaprovider::test
