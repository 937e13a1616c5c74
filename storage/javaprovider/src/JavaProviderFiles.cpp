// The operations that create, test, remove and move files and folders.
#include "JNIUtilsException.h"
#include "JNIUtilsRef.h"
#include "JavaProvider.h"

namespace storage::javaprovider {

namespace {

bool fileMoveReplaces(JavaProvider::ReplacementPolicy policy) {
    return policy == JavaProvider::ReplacementPolicy::ReplaceExisting ||
           policy == JavaProvider::ReplacementPolicy::ReplaceExistingFile;
}

/// A policy that spares folders spares the one at a folder's destination.
bool folderMoveReplaces(JavaProvider::ReplacementPolicy policy) {
    return policy == JavaProvider::ReplacementPolicy::ReplaceExisting;
}

}  // namespace

void JavaProvider::callVoid(const char* name, const StorageIRI& location) const {
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    env->CallVoidMethod(m_provider, method(name), uri.get());
    rethrowJavaException(env);
}

bool JavaProvider::callBoolean(const char* name, const StorageIRI& location) const {
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    const jboolean result = env->CallBooleanMethod(m_provider, method(name), uri.get());
    rethrowJavaException(env);
    return result != JNI_FALSE;
}

void JavaProvider::callMove(const char* name, const StorageIRI& source, const StorageIRI& destination,
                            const ReplacementPolicy& policy, bool (*replaces)(ReplacementPolicy)) const {
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> sourceUri(env, createStorageUri(env, source));
    const LocalRef<jobject> destinationUri(env, createStorageUri(env, destination));
    const jboolean replace = replaces(policy) ? JNI_TRUE : JNI_FALSE;
    env->CallVoidMethod(m_provider, method(name), sourceUri.get(), destinationUri.get(), replace);
    rethrowJavaException(env);
}

void JavaProvider::doCreateFile(const StorageIRI& location) const { callVoid("createFile", location); }

void JavaProvider::doCreateFolder(const StorageIRI& location) const { callVoid("createFolder", location); }

bool JavaProvider::doFileExists(const StorageIRI& location) const { return callBoolean("fileExists", location); }

bool JavaProvider::doFolderExists(const StorageIRI& location) const { return callBoolean("folderExists", location); }

void JavaProvider::doRemoveFile(const StorageIRI& location) const { callVoid("removeFile", location); }

void JavaProvider::doMoveFile(const StorageIRI& source, const StorageIRI& destination,
                              const ReplacementPolicy& policy) const {
    callMove("moveFile", source, destination, policy, fileMoveReplaces);
}

void JavaProvider::doRemoveFolder(const StorageIRI& location) const { callVoid("removeFolder", location); }

void JavaProvider::doRemoveFolderRecursive(const StorageIRI& location) const {
    callVoid("removeFolderRecursively", location);
}

void JavaProvider::doMoveFolder(const StorageIRI& source, const StorageIRI& destination,
                                const ReplacementPolicy& policy) const {
    callMove("moveFolder", source, destination, policy, folderMoveReplaces);
}

}  // namespace storage::javaprovider
