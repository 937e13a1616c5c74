#include "verbs/TreeRemoval.h"

#include <utility>
#include <vector>

#include "Entry.h"
#include "Interrupt.h"
#include "foundation/storage/provider/Exception.h"
#include "verbs/ReportFailure.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

/// A folder on the present path, with what is still to be removed from it.
struct Level {
    Location folder;
    std::vector<Entry> rest;
    bool keeps = false;  ///< something in it stays, so that it must stay as well
};

class TreeRemoval {
public:
    explicit TreeRemoval(Context& context) : m_context(context), m_provider(context.provider()) {}

    [[nodiscard]] ExitCode run(const Location& folder) {
        enter(folder);
        while (m_path.size() > 1 || !m_path.front().rest.empty()) {
            stopIfInterrupted();
            step();
        }
        if (m_path.front().keeps) {
            return ExitCode::SomeFailed;
        }
        m_provider.removeFolder(folder.iri());
        return ExitCode::Done;
    }

private:
    void enter(const Location& folder) {
        m_path.push_back({folder, entriesOf(m_provider, {folder, {}, EntryType::Folder})});
    }

    /// Removes one entry of the innermost folder, or enters it, or removes the folder when it has none left.
    void step() {
        if (m_path.back().rest.empty()) {
            leave();
            return;
        }
        const auto entry = std::move(m_path.back().rest.back());
        m_path.back().rest.pop_back();
        attempt(entry.location, [&] {
            m_context.progress().at(entry.location);
            if (!entry.isFolder()) {
                m_provider.removeFile(entry.location.iri());
            } else if (isLink(m_provider, entry.location)) {
                m_provider.removeFolder(entry.location.iri());
            } else {
                enter(entry.location);
                return;
            }
            m_context.progress().countItem();
        });
    }

    void leave() {
        const auto level = std::move(m_path.back());
        m_path.pop_back();
        if (level.keeps) {
            m_path.back().keeps = true;
            return;
        }
        attempt(level.folder, [&] {
            m_provider.removeFolder(level.folder.iri());
            m_context.progress().countItem();
        });
    }

    /// Does something; what fails is reported, and the innermost folder keeps it.
    template <class Action>
    void attempt(const Location& location, const Action& action) {
        try {
            action();
        } catch (...) {
            static_cast<void>(reportFailure(m_context, location));
            m_path.back().keeps = true;
        }
    }

    Context& m_context;
    const IProvider& m_provider;
    std::vector<Level> m_path;
};

}  // namespace

ExitCode removeOneByOne(Context& context, const Location& folder) { return TreeRemoval(context).run(folder); }

}  // namespace jstore
