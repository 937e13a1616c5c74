#include "work/Entry.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "fl/i18n/text.h"
#include "process/Interrupt.h"

namespace jstore {

using namespace foundation::storage::provider;

std::string Entry::nameText() const { return printableName(fl::i18n::to_string(name)); }

const char* wordFor(EntryType type) noexcept { return type == EntryType::Folder ? "folder" : "file"; }

std::vector<Entry> entriesOf(const IProvider& provider, const Entry& folder) {
    std::vector<Entry> entries;
    const std::unique_ptr<IFolderEntryIterator> listing = provider.listAll(folder.location.iri());
    while (listing->hasMore()) {
        stopIfInterrupted();
        listing->advance();
        const FolderEntry found = listing->getCurrent();
        entries.push_back({Location(folder.location.iri().getChild(found.name())), found.name(), found.type(),
                           folder.depth + 1, /*last=*/false});
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry& left, const Entry& right) { return left.name < right.name; });
    if (!entries.empty()) {
        entries.back().last = true;
    }
    return entries;
}

Entry entryAt(const IProvider& provider, const Location& location) {
    const std::optional<EntryType> type = provider.existsExtended(location.iri());
    if (!type) {
        throw Exception(ErrorCode::NotFound, location.iri());
    }
    return {location, location.iri().normalized().getName(), *type};
}

EntryAttributes attributesOf(const IProvider& provider, const Entry& entry) {
    if (entry.isFolder()) {
        const FolderAttributes folder = provider.getFolderAttributes(entry.location.iri());
        return {std::nullopt, folder.lastModified(), folder.writable()};
    }
    const FileAttributes file = provider.getFileAttributes(entry.location.iri());
    return {file.size(), file.lastModified(), file.writable()};
}

}  // namespace jstore
