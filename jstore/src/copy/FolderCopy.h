#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "copy/FileCopy.h"
#include "copy/WrittenTargets.h"
#include "work/TreeWalk.h"

namespace jstore {

/// Copies a folder with all it holds. A failure in it is reported and the copy continues; a full storage ends the
/// command.
class FolderCopy final : public TreeWalk {
public:
    /// Adds what it puts in place to `written`, which must outlive it.
    FolderCopy(Context& context, const Location& target, bool replace, WrittenTargets& written);

    [[nodiscard]] std::uint64_t bytes() const noexcept { return m_bytes; }

protected:
    void enter(const Entry& folder, const std::vector<Entry>& entries) override;
    void visit(const Entry& entry) override;
    void approach(const Entry& folder, const NodeInfo& info) override;
    void passLink(const Entry& entry) override;
    void leave(const Entry& folder) override;

private:
    [[nodiscard]] CopyTarget targetOf(const Entry& entry) const;
    [[nodiscard]] CopyTarget opened(CopyTarget target) const;

    WrittenTargets& m_written;
    /// The targets of the folders along the current path.
    std::vector<CopyTarget> m_targets;
    /// The identity of the folder that receives everything, once it is known.
    std::optional<std::string> m_identity;
    std::uint64_t m_bytes = 0;
};

}  // namespace jstore
