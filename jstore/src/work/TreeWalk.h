#pragma once

#include <cstddef>
#include <vector>

#include "base/ExitCode.h"
#include "base/Facts.h"
#include "work/Context.h"
#include "work/Entry.h"

namespace jstore {

/// Walks everything below a folder, a folder before what it holds, names in order. Verbs override what they are about.
///
/// A symbolic link to a folder is not entered, except at the beginning. What fails below the beginning is reported as
/// the failure of that file or folder, and the walk continues after it. At a time the listings along one path are in
/// memory, and the stack does not grow with the depth; a folder more than 2048 folders deep is not entered, and fails
/// with InvalidLocation. Used only by the main thread; blocks in Java.
class TreeWalk {
public:
    virtual ~TreeWalk() = default;

    TreeWalk(const TreeWalk&) = delete;
    TreeWalk& operator=(const TreeWalk&) = delete;

    /// Walks. Returns Done, or SomeFailed when something below the folder failed. Throws what the folder itself fails
    /// with (NotFound, NotAFolder, …), and Interruption when a signal arrives.
    [[nodiscard]] ExitCode run(const Location& folder);

protected:
    explicit TreeWalk(Context& context) : m_context(&context), m_provider(&context.provider()) {}

    /// A folder has been listed, and what it holds comes next. An exception is the failure of the folder, whose
    /// contents are passed over.
    virtual void enter(const Entry& /*folder*/, const std::vector<Entry>& /*entries*/) {}
    /// A file or folder below the beginning; a folder is entered next.
    virtual void visit(const Entry& /*entry*/) {}
    /// A folder that is no link, after it was visited and before it is listed. An exception is its failure.
    virtual void approach(const Entry& /*folder*/, const Facts& /*facts*/) {}
    /// A symbolic link to a folder, after it was visited and instead of entering it.
    virtual void passLink(const Entry& /*entry*/) {}
    /// All that the folder holds has been walked.
    virtual void leave(const Entry& /*folder*/) {}

    [[nodiscard]] Context& context() const noexcept { return *m_context; }
    [[nodiscard]] const foundation::storage::provider::IProvider& provider() const noexcept { return *m_provider; }
    /// The walk is to end with SomeFailed.
    void noteFailure() noexcept { m_failed = true; }

private:
    /// A folder on the present path, with what it holds.
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
