#include "defaults/JavaStorage.h"

#include <gtest/gtest.h>

#include <exception>

#include "fl/i18n/text.h"
#include "storage/javaprovider/EntryPoints.h"
#include "support/JavaHelpers.h"
#include "support/JvmEnvironment.h"

namespace storage::javaprovider::test {

namespace {

using foundation::storage::provider::StorageIRI;

constexpr const char* Storages = "com/corvallen/storage/test/defaults/Storages";

JNIEnv* env() {
    void* env = nullptr;
    JvmEnvironment::jvm()->getJavaVM()->GetEnv(&env, JNI_VERSION_10);
    return static_cast<JNIEnv*>(env);
}

}  // namespace

JavaStorage::JavaStorage(const std::string& kind)
    : m_attached(JvmEnvironment::jvm()),
      m_root(callStaticString(env(), Storages, "make", {kind})),
      m_folder(StorageIRI(fl::i18n::to_ustring(m_root)).getChild(u"folder")),
      m_provider(buildProvider(JvmEnvironment::jvm(), "com/corvallen/storage/backend/nio/NioProvider")) {
    m_provider->createFolder(m_folder);
}

JavaStorage::~JavaStorage() {
    m_provider.reset();
    try {
        callStaticVoid(env(), Storages, "drop", {m_root});
    } catch (const std::exception& error) {
        ADD_FAILURE() << m_root << " is left behind: " << error.what();
    }
}

}  // namespace storage::javaprovider::test

namespace foundation::test {

std::vector<StorageKind> storageKinds() {
    std::vector<StorageKind> kinds;
    for (const char* kind : {"DefaultFileSystem", "MemoryMount", "ArchiveMount"}) {
        kinds.push_back({kind, [kind] { return std::make_unique<::storage::javaprovider::test::JavaStorage>(kind); }});
    }
    return kinds;
}

}  // namespace foundation::test
