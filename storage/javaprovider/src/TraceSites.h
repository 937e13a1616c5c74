#pragma once

#include <cstdint>

#include "JNIUtilsLog.h"

// Where the library's traced functions stand, as its trace records say it.

namespace storage::javaprovider {

/// Source names of trace records: the path up to the stem that the files of one subject share.
inline constexpr const char* JNIUtilsSource = "storage/javaprovider/src/JNIUtils";
inline constexpr const char* JavaProviderSource = "storage/javaprovider/src/JavaProvider";

/// The site of the function that names it, with the compiler's own signature and a given line, or its own.
#define JAVAPROVIDER_TRACE_SITE_AT(source, line) \
    (::storage::javaprovider::TraceSite{__PRETTY_FUNCTION__, (source), static_cast<std::uint32_t>(line)})
#define JAVAPROVIDER_TRACE_SITE(source) JAVAPROVIDER_TRACE_SITE_AT(source, __LINE__)

// Hosts filter trace records by the texts and lines below: they stay the same in every version, whatever compiler built
// the library.

inline constexpr const char* LoadClassSignature =
    "class _jclass *__cdecl storage::javaprovider::loadClass(const class storage::javaprovider::JNIEnvPtr &,"
    "class _jobject *const ,const class std::basic_string<char,struct std::char_traits<char>,"
    "class std::allocator<char> > &)";

inline constexpr TraceSite GetFileAttributesSite = {
    "class foundation::storage::provider::FileAttributes __cdecl "
    "storage::javaprovider::JavaProvider::doGetFileAttributes("
    "const class foundation::storage::provider::StorageIRI &) const",
    JavaProviderSource, 548};
inline constexpr TraceSite GetFolderAttributesSite = {
    "class foundation::storage::provider::FolderAttributes __cdecl "
    "storage::javaprovider::JavaProvider::doGetFolderAttributes("
    "const class foundation::storage::provider::StorageIRI &) const",
    JavaProviderSource, 575};
inline constexpr TraceSite GetExtendedAttributesSite = {
    "class foundation::storage::provider::ExtendedAttributes __cdecl "
    "storage::javaprovider::JavaProvider::doGetExtendedAttributes("
    "const class foundation::storage::provider::StorageIRI &) const",
    JavaProviderSource, 655};
inline constexpr TraceSite BuildProviderStorageInfoSite = {
    "class foundation::storage::provider::ProviderStorageInfo __cdecl "
    "storage::javaprovider::buildProviderStorageInfo("
    "const class storage::javaprovider::JNIEnvPtr &,class _jobject *const )",
    JavaProviderSource, 679};
inline constexpr TraceSite GetProviderStorageInfoSite = {
    "class foundation::storage::provider::ProviderStorageInfo __cdecl "
    "storage::javaprovider::JavaProvider::doGetProviderStorageInfo("
    "const class foundation::storage::provider::StorageIRI &) const",
    JavaProviderSource, 696};
inline constexpr std::uint32_t SetLastModifiedLine = 718;
inline constexpr std::uint32_t ListFolderContentsLine = 808;

}  // namespace storage::javaprovider
