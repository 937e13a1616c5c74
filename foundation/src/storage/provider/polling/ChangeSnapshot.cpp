#include "storage/provider/polling/ChangeSnapshot.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace foundation::storage::provider::detail {

namespace {

EntryStamp stampOf(const IProvider& provider, const StorageIRI& location, EntryType type) {
    if (type == EntryType::Folder) {
        const FolderAttributes attributes = provider.getFolderAttributes(location);
        return {std::nullopt, attributes.lastModified(), attributes.writable()};
    }
    const FileAttributes attributes = provider.getFileAttributes(location);
    return {attributes.size(), attributes.lastModified(), attributes.writable()};
}

/// Whether the error means that a child is gone, or is not what the listing said.
bool saysGone(const Exception& error) {
    return error.code() == ErrorCode::NotFound || error.code() == ErrorCode::NotAFile ||
           error.code() == ErrorCode::NotAFolder;
}

/// A folder being read.
struct Folder {
    const IProvider& provider;
    const StorageIRI& location;
    const ChangeSnapshot& before;
};

std::optional<EntryStamp> rememberedStamp(const Folder& folder, const FolderEntry& entry) {
    const ChildState* const before = folder.before.find(entry.name());
    return before != nullptr && before->state.type == entry.type() ? before->state.stamp : std::nullopt;
}

/// What a listed child is now; empty if it has gone since it was listed.
std::optional<EntryState> stateOf(const Folder& folder, const FolderEntry& entry, const StorageIRI& child) {
    try {
        return EntryState{entry.type(), stampOf(folder.provider, child, entry.type())};
    } catch (const Exception& error) {
        if (saysGone(error)) {
            return std::nullopt;
        }
    } catch (const std::exception&) {
        // The listing says that the child is there. Nothing more is known of it for now.
    }
    return EntryState{entry.type(), rememberedStamp(folder, entry)};
}

/// Empty for a name that no location can hold.
std::optional<StorageIRI> childOf(const StorageIRI& folder, const std::u16string& name) {
    try {
        return folder.getChild(name);
    } catch (const Exception&) {
        return std::nullopt;
    }
}

void sortByName(std::vector<ChildState>& children) {
    const auto before = [](const ChildState& left, const ChildState& right) { return left.name < right.name; };
    const auto same = [](const ChildState& left, const ChildState& right) { return left.name == right.name; };
    std::stable_sort(children.begin(), children.end(), before);
    children.erase(std::unique(children.begin(), children.end(), same), children.end());
    children.shrink_to_fit();
}

/// Empty when `stop` is requested before the end.
std::optional<std::vector<ChildState>> childrenOf(const Folder& folder, const std::stop_token& stop) {
    std::vector<ChildState> children;
    for (const auto entries = folder.provider.listAll(folder.location); entries->hasMore();) {
        if (stop.stop_requested()) {
            return std::nullopt;
        }
        entries->advance();
        const FolderEntry& entry = entries->getCurrent();
        const std::optional<StorageIRI> child = childOf(folder.location, entry.name());
        const std::optional<EntryState> state = child ? stateOf(folder, entry, *child) : std::nullopt;
        if (state) {
            children.push_back({entry.name(), *state});
        }
    }
    sortByName(children);
    return children;
}

}  // namespace

const ChildState* ChangeSnapshot::find(const std::u16string& name) const {
    const auto found = std::ranges::lower_bound(children, name, {}, &ChildState::name);
    return found != children.end() && found->name == name ? &*found : nullptr;
}

std::optional<ChangeSnapshot> takeSnapshot(const IProvider& provider, const StorageIRI& location,
                                           const ChangeSnapshot& before, const std::stop_token& stop) {
    ChangeSnapshot result;
    const std::optional<EntryType> type = provider.existsExtended(location);
    if (!type) {
        return result;
    }
    result.self = EntryState{*type, stampOf(provider, location, *type)};
    if (*type == EntryType::Folder) {
        std::optional<std::vector<ChildState>> children = childrenOf({provider, location, before}, stop);
        if (!children) {
            return std::nullopt;
        }
        result.children = std::move(*children);
    }
    return result;
}

}  // namespace foundation::storage::provider::detail
