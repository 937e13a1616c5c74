#pragma once

#include <jni.h>

#include <boost/logic/tribool.hpp>

#include <memory>
#include <mutex>
#include <string>

#include "JNIUtilsClass.h"
#include "JNIUtilsEnv.h"
#include "OnceLatch.h"
#include "foundation/storage/provider/IConfigurableProvider.h"

namespace storage::javaprovider {

/// A storage provider that forwards every operation to one Java object.
///
/// After construction its members are only read, except for the event state, so any number of threads may run
/// operations at once without a lock; each creates its own JNIEnvPtr. Only start requests wait for each other, while
/// the publisher is set up or created again. Operations block in Java.
///
/// Hazards:
///  - Do not destroy it while an operation, a stream that depends on its Java object, or an event delivery is running.
///  - The destructor calls "dispose" on the Java object and ignores an exception from it. The exception stays pending
///    on a thread that was attached before; on other threads it disappears with the attachment.
///  - An exception from "hasFeature" stays pending in the same way; the answer is then false.
///  - The Java class ExtendedFeature stays referenced for the rest of the process, on purpose.
class JavaProvider : public foundation::storage::provider::IConfigurableProvider {
public:
    using StorageIRI = foundation::storage::provider::StorageIRI;
    using ReplacementPolicy = foundation::storage::provider::ReplacementPolicy;
    using ChangeCallback = foundation::storage::provider::ChangeCallback;

    /// Resolves the contract's 22 methods on the object's class and takes its own references to the object and to four
    /// classes of the contract, found through the object's class loader.
    ///
    /// `provider` is any reference valid on this thread and stays the caller's. A null one leaves, without an error, an
    /// object whose operations all fail. Throws "JVM remvoed" when the virtual machine is gone; the error of
    /// getMethodID() for a method that is missing; std::bad_alloc when the object cannot be held; the description of
    /// the Java error when a class of the contract is missing (the global reference to the object then leaks).
    JavaProvider(std::shared_ptr<jvm_interface::JVM> jvm, jobject provider);

    /// Disposes of the Java object and releases all references but the one to ExtendedFeature. Never throws: what goes
    /// wrong is logged as "Exception caught: " and its message. Blocks in Java until "dispose" returns.
    ~JavaProvider() override;

protected:
    void doCreateFile(const StorageIRI& location) const override;
    void doCreateFolder(const StorageIRI& location) const override;
    bool doFileExists(const StorageIRI& location) const override;
    bool doFolderExists(const StorageIRI& location) const override;
    void doRemoveFile(const StorageIRI& location) const override;
    void doMoveFile(const StorageIRI& source, const StorageIRI& destination,
                    const ReplacementPolicy& policy) const override;
    void doRemoveFolder(const StorageIRI& location) const override;
    void doRemoveFolderRecursive(const StorageIRI& location) const override;
    void doMoveFolder(const StorageIRI& source, const StorageIRI& destination,
                      const ReplacementPolicy& policy) const override;
    foundation::storage::provider::FileAttributes doGetFileAttributes(const StorageIRI& location) const override;
    foundation::storage::provider::FolderAttributes doGetFolderAttributes(const StorageIRI& location) const override;
    std::unique_ptr<foundation::storage::provider::ByteStream> doOpenByteStream(
        const StorageIRI& location, const foundation::storage::provider::ByteStreamOpenOptions& options) const override;
    std::unique_ptr<foundation::storage::provider::ByteStream> doOpenReadOnlyByteStream(
        const StorageIRI& location) const override;
    std::unique_ptr<foundation::storage::provider::IFolderEntryIterator> doListAll(
        const StorageIRI& folder) const override;
    std::unique_ptr<foundation::storage::provider::IFolderEntryIterator> doListFiles(
        const StorageIRI& folder) const override;
    std::unique_ptr<foundation::storage::provider::IFolderEntryIterator> doListFolders(
        const StorageIRI& folder) const override;
    void doSetLastModified(const StorageIRI& location, const boost::posix_time::ptime& lastModified) const override;
    void doStartChangeNotification(const StorageIRI& location, const ChangeCallback& callback, const void* context,
                                   std::int32_t onParent) const override;
    void doStartChangeNotificationOnParent(const StorageIRI& location, const ChangeCallback& callback,
                                           const void* context) const override;
    void doStopChangeNotification(const StorageIRI& location) const override;
    bool doHasFeature(const foundation::storage::provider::ExtendedFeature& feature) const override;
    foundation::storage::provider::ExtendedAttributes doGetExtendedAttributes(
        const StorageIRI& location) const override;
    foundation::storage::provider::ProviderStorageInfo doGetProviderStorageInfo(
        const StorageIRI& location) const override;
    void doConfigure(const boost::property_tree::ptree& settings) override;

private:
    void resolveMethods(const JNIEnvPtr& env, jclass providerClass);
    void holdProvider(const JNIEnvPtr& env, jobject provider);
    void holdClasses(const JNIEnvPtr& env, jclass providerClass);
    void dispose();

    /// The ID of a method of the contract. Every name of the contract is there after a successful construction.
    [[nodiscard]] jmethodID method(const std::string& name) const { return methodIn(m_methods, name); }

    /// Throws AnonymousInternalException<std::runtime_error> when construction found no Java object to work with, or
    /// could not hold the class of locations.
    void requireUsable() const;
    /// The same when construction could not hold that class of the contract.
    static void requireClass(jclass held);

    /// The location as a new Java StorageURI, a local reference that the caller owns.
    ///
    /// Null when Java made none and gave no reason; callers hand it to Java as it is. Throws the method-not-found error
    /// when StorageURI has no constructor from String, and AnonymousInternalException<std::bad_alloc> when Java has no
    /// memory or the constructor throws; a log record says which of the two objects could not be made.
    [[nodiscard]] jobject createStorageUri(const JNIEnvPtr& env, const StorageIRI& location) const;

    /// The children of a folder that the filter wants: files (true), folders (false) or all (indeterminate).
    [[nodiscard]] std::unique_ptr<foundation::storage::provider::IFolderEntryIterator> listFolderContents(
        const StorageIRI& folder, const boost::logic::tribool& filesWanted) const;

    /// The constant of Java's ExtendedFeature as a local reference that the caller owns; null where Java has none.
    [[nodiscard]] jobject createFeatureConstant(const JNIEnvPtr& env,
                                                const foundation::storage::provider::ExtendedFeature& feature) const;

    /// Registers the native method, keeps a copy of the callback and makes the publisher. Runs under the latch.
    void setUpPublisher(const JNIEnvPtr& env, const ChangeCallback& callback) const;
    /// Makes a publisher for the kept callback. The member keeps the reference, which nothing deletes; it is null, with
    /// the Java exception pending, when the constructor throws.
    void createPublisher(const JNIEnvPtr& env) const;
    /// The publisher as a new local reference that the caller owns; a new publisher if the last one is gone.
    [[nodiscard]] jobject freshPublisher(const JNIEnvPtr& env) const;

    void callVoid(const char* name, const StorageIRI& location) const;
    [[nodiscard]] bool callBoolean(const char* name, const StorageIRI& location) const;
    /// `replaces` says for a policy whether Java may replace what is at the destination.
    void callMove(const char* name, const StorageIRI& source, const StorageIRI& destination,
                  const ReplacementPolicy& policy, bool (*replaces)(ReplacementPolicy)) const;

    std::shared_ptr<jvm_interface::JVM> m_jvm;
    jobject m_provider = nullptr;
    jclass m_storageUriClass = nullptr;
    jclass m_folderListEntryClass = nullptr;
    jclass m_nativePublisherClass = nullptr;
    /// Written by the last step of construction only, and never released: a host that holds a feature constant beyond
    /// the provider's life can count on its class.
    jclass m_extendedFeatureClass;
    MethodTable m_methods;

    // The event bridge's state.
    mutable std::unique_ptr<ChangeCallback> m_publisherCallback;
    /// The reference as it was made: good only under the frame and on the thread that made it. Nothing deletes it.
    mutable jobject m_publisherHandle = nullptr;
    mutable OnceLatch m_registerNativesOnce;
    /// Finds the publisher again on any thread as long as the Java side keeps it. Written under the latch by the
    /// set-up, under the mutex afterwards. The mutex is held while Java makes a publisher, at no other time.
    mutable jweak m_publisherWeak = nullptr;
    mutable std::mutex m_publisherMutex;
};

}  // namespace storage::javaprovider
