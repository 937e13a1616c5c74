#pragma once

#include <cstddef>
#include <vector>

#include "base/ExitCode.h"
#include "base/NodeInfo.h"
#include "work/Context.h"
#include "work/Entry.h"

namespace jstore {

/// Walks everything below a folder: each folder before its contents, names in order. Subclasses override the functions
/// that they need.
///
/// A symbolic link to a folder is not entered, except at the beginning. A failure below the beginning is reported for
/// its file or folder, and the walk continues after it. Memory holds the listings along one path at a time, and the
/// stack does not grow with the depth. A folder more than 2048 folders deep is not entered and fails with
/// InvalidLocation. Used only by the main thread; blocks in Java.
class TreeWalk {
public:
    virtual ~TreeWalk() = default;

    TreeWalk(const TreeWalk&) = delete;
    TreeWalk& operator=(const TreeWalk&) = delete;

    /// Walks. Returns Done, or SomeFailed if something below the folder failed. Throws for a failure of the folder
    /// itself (NotFound, NotAFolder, …), and Interruption when a signal arrives.
    [[nodiscard]] ExitCode run(const Location& folder);

protected:
    explicit TreeWalk(Context& context) : m_context(&context), m_provider(&context.provider()) {}

    /// Called after a folder was listed and before its contents. An exception counts as the failure of the folder,
    /// whose contents are then skipped.
    virtual void enter(const Entry& /*folder*/, const std::vector<Entry>& /*entries*/) {}
    /// Called for each file and folder below the beginning; a folder is entered next.
    virtual void visit(const Entry& /*entry*/) {}
    /// Called for a folder that is no link, after visit() and before it is listed. An exception counts as its failure.
    virtual void approach(const Entry& /*folder*/, const NodeInfo& /*info*/) {}
    /// Called for a symbolic link to a folder, after visit(); the link is not entered.
    virtual void passLink(const Entry& /*entry*/) {}
    /// Called after all contents of the folder.
    virtual void leave(const Entry& /*folder*/) {}

    [[nodiscard]] Context& context() const noexcept { return *m_context; }
    [[nodiscard]] const foundation::storage::provider::IProvider& provider() const noexcept { return *m_provider; }
    /// Makes the walk end with SomeFailed.
    void noteFailure() noexcept { m_failed = true; }

private:
    /// A folder on the current path, with its contents.
    struct Level {
        Entry folder;
        std::vector<Entry> entries;
        std::size_t next = 0;
    };

    void open(const Entry& folder);
    void step();
    void take(const Entry& entry);
    template <class Action>
    void attempt(const Location& location, const Action& action);

    Context* m_context;
    const foundation::storage::provider::IProvider* m_provider;
    std::vector<Level> m_path;
    bool m_failed = false;
};

}  // namespace jstore
