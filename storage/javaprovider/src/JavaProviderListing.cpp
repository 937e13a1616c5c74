// Folder listings: read whole from Java, then walked without it.
#include <boost/logic/tribool.hpp>

#include <utility>
#include <vector>

#include "JNIUtilsClass.h"
#include "JNIUtilsException.h"
#include "JNIUtilsLog.h"
#include "JNIUtilsRef.h"
#include "JNIUtilsText.h"
#include "JavaProvider.h"
#include "TraceSites.h"
#include "foundation/storage/provider/FolderEntryIteratorRangeAdapter.h"

namespace storage::javaprovider {

using namespace foundation::storage::provider;

namespace {

using ListingIterator = IClonableFolderEntryIterator<FolderEntryIteratorRangeAdapter<std::vector<FolderEntry>>>;

/// The listing iterator's transform: returns its argument.
struct FolderEntryPassthrough {
    FolderEntry operator()(FolderEntry entry) const { return entry; }
};

/// Reads the elements of a Java listing, keeping those that a filter wants.
class ListingReader {
public:
    /// Looks the entry's getters up, once for the whole listing.
    ListingReader(const JNIEnvPtr& env, jclass entryClass, const boost::logic::tribool& filesWanted)
        : m_env(env),
          m_entryClass(entryClass),
          m_getName(getMethodID(env, entryClass, "getName", "()Ljava/lang/String;")),
          m_isFolder(getMethodID(env, entryClass, "isFolder", "()Z")),
          m_filesWanted(filesWanted) {}

    /// Appends the element, if it is an entry and wanted; no reference to it is left.
    void read(jobjectArray array, jsize index, std::vector<FolderEntry>& entries) const {
        const LocalRef<jobject> element(m_env, m_env->GetObjectArrayElement(array, index));
        if (m_env->IsInstanceOf(element.get(), m_entryClass) == JNI_FALSE) {
            return;
        }
        // No look at a pending exception: the contract says that getters never throw.
        const LocalRef<jstring> javaName(m_env,
                                         static_cast<jstring>(m_env->CallObjectMethod(element.get(), m_getName)));
        const bool isFolder = m_env->CallBooleanMethod(element.get(), m_isFolder) != JNI_FALSE;
        FolderEntry entry(jstringToUString(m_env, javaName.get()), isFolder ? EntryType::Folder : EntryType::File);
        if (boost::logic::indeterminate(m_filesWanted) || m_filesWanted == !isFolder) {
            entries.push_back(std::move(entry));
        }
    }

private:
    const JNIEnvPtr& m_env;
    jclass m_entryClass;
    jmethodID m_getName;
    jmethodID m_isFolder;
    boost::logic::tribool m_filesWanted;
};

}  // namespace

std::unique_ptr<IFolderEntryIterator> JavaProvider::listFolderContents(const StorageIRI& folder,
                                                                       const boost::logic::tribool& filesWanted) const {
    const TraceScope trace(JAVAPROVIDER_TRACE_SITE_AT(JavaProviderSource, ListFolderContentsLine));
    FOUNDATION_LOG(logger(), Severity::Arguments) << " the_iri=" << folder;
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, folder));
    const LocalRef<jobject> listing(env, env->CallObjectMethod(m_provider, method("listFolder"), uri.get()));
    rethrowJavaException(env);
    auto* array = static_cast<jobjectArray>(listing.get());
    const jsize length = env->GetArrayLength(array);
    std::vector<FolderEntry> entries;
    if (length > 0) {
        requireClass(m_folderListEntryClass);
        const ListingReader reader(env, m_folderListEntryClass, filesWanted);
        // Grown bit by bit, the list would be there twice in the end.
        entries.reserve(static_cast<std::size_t>(length));
        for (jsize index = 0; index < length; ++index) {
            reader.read(array, index, entries);
        }
    }
    return std::make_unique<ListingIterator>(std::move(entries), FolderEntryPassthrough());
}

std::unique_ptr<IFolderEntryIterator> JavaProvider::doListAll(const StorageIRI& folder) const {
    return listFolderContents(folder, boost::logic::indeterminate);
}

std::unique_ptr<IFolderEntryIterator> JavaProvider::doListFiles(const StorageIRI& folder) const {
    return listFolderContents(folder, true);
}

std::unique_ptr<IFolderEntryIterator> JavaProvider::doListFolders(const StorageIRI& folder) const {
    return listFolderContents(folder, false);
}

}  // namespace storage::javaprovider
