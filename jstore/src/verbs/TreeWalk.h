#pragma once

#include <cstddef>
#include <vector>

#include "Context.h"
#include "Entry.h"
#include "ExitCode.h"

namespace jstore {

/// Walks everything below a folder, a folder before what it holds, names in order. Verbs override what they are about.
///
/// A symbolic link to a folder is not entered, except at the beginning. What fails below the beginning is reported as
/// the failure of that file or folder, and the walk goes on behind it. At a time the listings along one path are in
/// memory. Used by the main thread alone; blocks in Java.
class TreeWalk {
public:
    virtual ~TreeWalk() = default;

    TreeWalk(const TreeWalk&) = delete;
    TreeWalk& operator=(const TreeWalk&) = delete;

    /// Walks. Returns Done, or SomeFailed when something below the folder failed. Throws what the folder itself fails
    /// with (NotFound, NotAFolder, …), and Interruption when SIGINT arrives.
    [[nodiscard]] ExitCode run(const Location& folder);

protected:
    explicit TreeWalk(Context& context) : m_context(&context), m_provider(&context.provider()) {}

    /// A folder has been listed, and what it holds comes next. An exception is the failure of the folder, whose
    /// contents are passed over.
    virtual void enter(const Entry& /*folder*/, const std::vector<Entry>& /*entries*/) {}
    /// A file or folder below the beginning; a folder is entered next.
    virtual void visit(const Entry& /*entry*/) {}
    /// A symbolic link to a folder, after it was visited and instead of entering it.
    virtual void passLink(const Entry& /*entry*/) {}
    /// All that the folder holds has been walked.
    virtual void leave(const Entry& /*folder*/) {}

    [[nodiscard]] Context& context() const noexcept { return *m_context; }
    [[nodiscard]] const foundation::storage::provider::IProvider& provider() const noexcept { return *m_provider; }
    /// The walk is to end with SomeFailed.
    void noteFailure() noexcept { m_failed = true; }

private:
    void walk(const Entry& folder);
    void attempt(const Entry& entry);

    Context* m_context;
    const foundation::storage::provider::IProvider* m_provider;
    bool m_failed = false;
};

}  // namespace jstore
