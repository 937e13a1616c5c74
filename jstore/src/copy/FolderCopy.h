#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "copy/FileCopy.h"
#include "copy/MadeHere.h"
#include "work/TreeWalk.h"

namespace jstore {

/// Copies a folder with all it holds. What fails in it is reported, and the rest follows; a full storage ends the
/// command.
class FolderCopy final : public TreeWalk {
public:
    /// What it puts in place is noted in `made`, which must outlive it.
    FolderCopy(Context& context, const Location& target, bool replace, MadeHere& made);

    [[nodiscard]] std::uint64_t bytes() const noexcept { return m_bytes; }

protected:
    void enter(const Entry& folder, const std::vector<Entry>& entries) override;
    void visit(const Entry& entry) override;
    void approach(const Entry& folder, const Facts& facts) override;
    void passLink(const Entry& entry) override;
    void leave(const Entry& folder) override;

private:
    [[nodiscard]] CopyTarget targetOf(const Entry& entry) const;
    [[nodiscard]] CopyTarget opened(CopyTarget target) const;

    MadeHere& m_made;
    /// The targets of the folders along the present path.
    std::vector<CopyTarget> m_targets;
    /// That of the folder to which all goes, once it was asked for.
    std::optional<std::string> m_identity;
    std::uint64_t m_bytes = 0;
};

}  // namespace jstore
