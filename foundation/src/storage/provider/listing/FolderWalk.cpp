#include "storage/provider/listing/FolderWalk.h"

#include <exception>
#include <utility>

namespace foundation::storage::provider::detail {

namespace {

std::u16string joinPath(const std::u16string& path, const std::u16string& name) {
    return path.empty() ? name : path + u'/' + name;
}

/// The listing of a folder that was there; empty if it has been removed or replaced since.
std::unique_ptr<IFolderEntryIterator> listUnlessGone(const IProvider& provider, const StorageIRI& folder) {
    try {
        return provider.listAll(folder);
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotFound && error.code() != ErrorCode::NotAFolder) {
            throw;
        }
        return nullptr;
    }
}

}  // namespace

FolderWalk::Level::Level(StorageIRI location, std::u16string pathBelow, std::size_t depthBelow,
                         std::unique_ptr<IFolderEntryIterator> listing)
    : folder(std::move(location)), path(std::move(pathBelow)), depth(depthBelow), entries(std::move(listing)) {}

FolderWalk::Level::Level(const Level& other)
    : folder(other.folder), path(other.path), depth(other.depth), entries(other.entries->clone()) {}

FolderWalk::FolderWalk(const IProvider& provider, const StorageIRI& folder) : m_provider(&provider) {
    m_levels.emplace_back(folder, std::u16string(), 0, provider.listAll(folder));
}

FolderWalk::FolderWalk(const FolderWalk& other)
    : m_provider(other.m_provider),
      m_levels(other.m_levels),
      m_nextFolder(other.m_nextFolder),
      m_asksForLinks(other.m_asksForLinks) {}

std::unique_ptr<EntrySource> FolderWalk::clone() const { return std::make_unique<FolderWalk>(*this); }

std::optional<FolderEntry> FolderWalk::next() {
    enterFolder();
    try {
        return nextEntry();
    } catch (...) {
        // A listing that breaks off ends here: it might break off at the same place every time.
        m_levels.pop_back();
        throw;
    }
}

std::optional<FolderEntry> FolderWalk::nextEntry() {
    leaveFinished();
    if (m_levels.empty()) {
        return std::nullopt;
    }
    const Level& level = m_levels.back();
    level.entries->advance();
    const FolderEntry entry = level.entries->getCurrent();
    FolderEntry result(joinPath(level.path, entry.name()), entry.type());
    if (entry.type() == EntryType::Folder) {
        m_nextFolder = entry.name();
    }
    return result;
}

void FolderWalk::leaveFinished() {
    while (!m_levels.empty() && !m_levels.back().entries->hasMore()) {
        m_levels.pop_back();
    }
}

void FolderWalk::enterFolder() {
    if (!m_nextFolder) {
        return;
    }
    const std::u16string name = *std::exchange(m_nextFolder, std::nullopt);
    const Level& parent = m_levels.back();
    enter(parent.folder.getChild(name), joinPath(parent.path, name), parent.depth + 1);
}

void FolderWalk::enter(const StorageIRI& folder, std::u16string path, std::size_t depth) {
    if (depth > MaxFolderDepth) {
        throw Exception(ErrorCode::InvalidLocation, folder);
    }
    if (leadsAway(folder)) {
        return;
    }
    auto entries = listUnlessGone(*m_provider, folder);
    if (!entries) {
        return;
    }
    if (!m_levels.back().entries->hasMore()) {
        m_levels.pop_back();
    }
    m_levels.emplace_back(folder, std::move(path), depth, std::move(entries));
}

bool FolderWalk::leadsAway(const StorageIRI& folder) {
    try {
        return m_asksForLinks && m_provider->getExtendedAttributes(folder).isSymbolicLink();
    } catch (const Exception& error) {
        m_asksForLinks = error.code() != ErrorCode::NotSupported;
    } catch (const std::exception&) {
        // The folder's listing comes next, and reports an error that lasts.
    }
    return false;
}

}  // namespace foundation::storage::provider::detail
