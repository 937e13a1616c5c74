#include "work/TreeRemoval.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/NodeInfo.h"
#include "base/Problem.h"
#include "foundation/storage/provider/Exception.h"
#include "java/InterruptibleCall.h"
#include "process/Interrupt.h"
#include "work/ReportFailure.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

/// How many entries of a folder are removed between two checks of its place; a check takes as long as a removal.
constexpr std::size_t CheckedAfter = 32;

/// A folder on the present path, with what is still to be removed from it.
struct Level {
    Location folder;
    std::unique_ptr<IFolderEntryIterator> rest;
    std::string identity;    ///< empty if the back end knows none
    std::size_t taken = 0;   ///< how many entries were removed, or tried
    bool keeps = false;      ///< something in it stays, so it must stay too
    bool holdsMore = false;  ///< something in it has no location of its own that the storage takes
};

class TreeRemoval {
public:
    explicit TreeRemoval(Context& context) : m_context(context), m_provider(context.provider()) {}

    [[nodiscard]] ExitCode run(const Location& folder) {
        removeFolder(folder);
        while (!m_path.empty()) {
            stopIfInterrupted();
            step();
        }
        return m_keeps ? ExitCode::SomeFailed : ExitCode::Done;
    }

private:
    /// Removes an empty folder or a link to a folder; enters any other folder.
    void removeFolder(const Location& folder) {
        try {
            m_provider.removeFolder(folder.iri());
        } catch (const Exception& error) {
            if (error.code() == ErrorCode::FolderNotEmpty) {
                enter(folder);
            } else if (error.code() == ErrorCode::NotSupported) {
                removeAtOnce(folder);
            } else {
                throw;
            }
            return;
        }
        m_context.progress().countItem();
    }

    /// Somebody may since have put a link in the folder's place; its target must not be emptied.
    void enter(const Location& folder) {
        std::unique_ptr<IFolderEntryIterator> listing = listingOf(folder);
        if (listing == nullptr) {
            removeAtOnce(folder);
            return;
        }
        NodeInfo info = nodeInfoOf(m_provider, folder.iri());
        if (info.link) {
            m_provider.removeFolder(folder.iri());
            m_context.progress().countItem();
        } else {
            m_path.push_back({folder, std::move(listing), std::move(info.identity)});
        }
    }

    /// Whether the place of the folder still leads to it, as far as that is known.
    [[nodiscard]] bool isStillThere(const Level& level) const {
        const NodeInfo info = nodeInfoOf(m_provider, level.folder.iri());
        const bool known = !info.identity.empty() && !level.identity.empty();
        return !info.link && (!known || info.identity == level.identity);
    }

    /// Something else is in the innermost folder's place; what it holds is not to be removed.
    void abandon() {
        const Location folder = std::move(m_path.back().folder);
        m_path.pop_back();
        attempt(folder,
                [&] { throw refusal(folder, ErrorCode::InUse, "something else took its place during the removal"); });
    }

    /// Null when the folder cannot be listed though it is there: it holds too much, or the back end lists nothing.
    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listingOf(const Location& folder) const {
        try {
            return m_provider.listAll(folder.iri());
        } catch (const Exception& error) {
            if (error.code() != ErrorCode::NotSupported && error.code() != ErrorCode::InvalidLocation) {
                throw;
            }
        } catch (const std::exception&) {
            // Java's heap or this process's memory is too small for it.
        }
        return nullptr;
    }

    void removeAtOnce(const Location& folder) {
        interruptibly(m_context.jvm(), [&] { m_provider.removeFolderRecursive(folder.iri()); });
        m_context.progress().countItem();
    }

    /// Removes one entry of the innermost folder, or enters it, or removes the folder when it has none left.
    void step() {
        Level& level = m_path.back();
        if (!level.rest->hasMore()) {
            leave();
            return;
        }
        if (++level.taken % CheckedAfter == 0 && !isStillThere(level)) {
            abandon();
            return;
        }
        level.rest->advance();
        const FolderEntry entry = level.rest->getCurrent();
        const Location location(level.folder.iri().getChild(entry.name()));
        m_context.progress().at(location);
        attempt(location, [&] { remove(location, entry.type()); });
    }

    void remove(const Location& location, EntryType type) {
        try {
            if (type == EntryType::Folder) {
                removeFolder(location);
            } else {
                m_provider.removeFile(location.iri());
                m_context.progress().countItem();
            }
        } catch (const Exception& error) {
            if (error.code() == ErrorCode::InvalidLocation) {
                m_path.back().holdsMore = true;
            } else if (error.code() != ErrorCode::NotFound) {
                throw;
            }
        }
    }

    void leave() {
        const Level level = std::move(m_path.back());
        m_path.pop_back();
        if (level.keeps) {
            keep();
            return;
        }
        if (m_path.empty()) {
            removeEmptied(level);
        } else {
            attempt(level.folder, [&] { removeEmptied(level); });
        }
    }

    void removeEmptied(const Level& level) {
        try {
            if (level.holdsMore) {
                removeAtOnce(level.folder);
                return;
            }
            m_provider.removeFolder(level.folder.iri());
            m_context.progress().countItem();
        } catch (const Exception& error) {
            if (error.code() != ErrorCode::NotFound) {
                throw;
            }
        }
    }

    /// Reports what fails; the innermost folder then stays.
    template <class Action>
    void attempt(const Location& location, const Action& action) {
        try {
            action();
        } catch (...) {
            static_cast<void>(reportFailure(m_context, location));
            keep();
        }
    }

    void keep() { (m_path.empty() ? m_keeps : m_path.back().keeps) = true; }

    Context& m_context;
    const IProvider& m_provider;
    std::vector<Level> m_path;
    bool m_keeps = false;
};

}  // namespace

ExitCode removeOneByOne(Context& context, const Location& folder) { return TreeRemoval(context).run(folder); }

}  // namespace jstore
