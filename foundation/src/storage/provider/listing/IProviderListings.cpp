// The default listings, each made of another listing.
#include "foundation/storage/provider/IProvider.h"

#include <utility>

#include "storage/provider/listing/EntryNameIterator.h"
#include "storage/provider/listing/FolderWalk.h"
#include "storage/provider/listing/LookAheadIterator.h"
#include "storage/provider/listing/MatchingEntries.h"

namespace foundation::storage::provider {

namespace {

using Part = detail::MatchingEntries::Part;

std::unique_ptr<IFolderEntryIterator> walk(std::unique_ptr<detail::EntrySource> source) {
    return std::make_unique<detail::LookAheadIterator>(std::move(source));
}

std::unique_ptr<IFolderEntryIterator> matching(std::unique_ptr<IFolderEntryIterator> entries,
                                               const std::u16string& wildcards, Part part) {
    return walk(std::make_unique<detail::MatchingEntries>(std::move(entries), Wildcards(wildcards), part));
}

std::unique_ptr<IFolderNameIterator> namesOf(std::unique_ptr<IFolderEntryIterator> entries) {
    return std::make_unique<detail::EntryNameIterator>(std::move(entries));
}

}  // namespace

std::unique_ptr<IFolderEntryIterator> IProvider::doListAllWildcards(const StorageIRI& folder,
                                                                    const std::u16string& wildcards) const {
    return matching(doListAll(folder), wildcards, Part::WholeName);
}

std::unique_ptr<IFolderEntryIterator> IProvider::doListFilesWildcards(const StorageIRI& folder,
                                                                      const std::u16string& wildcards) const {
    return matching(doListFiles(folder), wildcards, Part::WholeName);
}

std::unique_ptr<IFolderEntryIterator> IProvider::doListFoldersWildcards(const StorageIRI& folder,
                                                                        const std::u16string& wildcards) const {
    return matching(doListFolders(folder), wildcards, Part::WholeName);
}

std::unique_ptr<IFolderNameIterator> IProvider::doListAllNamesOnly(const StorageIRI& folder) const {
    return namesOf(doListAll(folder));
}

std::unique_ptr<IFolderNameIterator> IProvider::doListAllNamesOnlyWildcards(const StorageIRI& folder,
                                                                            const std::u16string& wildcards) const {
    return namesOf(doListAllWildcards(folder, wildcards));
}

std::unique_ptr<IFolderNameIterator> IProvider::doListFoldersNamesOnly(const StorageIRI& folder) const {
    return namesOf(doListFolders(folder));
}

std::unique_ptr<IFolderNameIterator> IProvider::doListFoldersNamesOnlyWildcards(const StorageIRI& folder,
                                                                                const std::u16string& wildcards) const {
    return namesOf(doListFoldersWildcards(folder, wildcards));
}

std::unique_ptr<IFolderNameIterator> IProvider::doListFilesNamesOnly(const StorageIRI& folder) const {
    return namesOf(doListFiles(folder));
}

std::unique_ptr<IFolderNameIterator> IProvider::doListFilesNamesOnlyWildcards(const StorageIRI& folder,
                                                                              const std::u16string& wildcards) const {
    return namesOf(doListFilesWildcards(folder, wildcards));
}

std::unique_ptr<IFolderEntryIterator> IProvider::doListAllRecursive(const StorageIRI& folder) const {
    return walk(std::make_unique<detail::FolderWalk>(*this, folder));
}

std::unique_ptr<IFolderEntryIterator> IProvider::doListAllRecursiveWildcards(const StorageIRI& folder,
                                                                             const std::u16string& wildcards) const {
    return matching(doListAllRecursive(folder), wildcards, Part::LastName);
}

std::unique_ptr<IFolderNameIterator> IProvider::doListAllRecursiveNamesOnly(const StorageIRI& folder) const {
    return namesOf(doListAllRecursive(folder));
}

std::unique_ptr<IFolderNameIterator> IProvider::doListAllRecursiveNamesOnlyWildcards(
    const StorageIRI& folder, const std::u16string& wildcards) const {
    return namesOf(doListAllRecursiveWildcards(folder, wildcards));
}

}  // namespace foundation::storage::provider
