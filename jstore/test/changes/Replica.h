#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "changes/Change.h"

namespace jstore::test {

/// What is in a folder: the paths of everything below it, and whether each is a folder.
using Entries = std::map<std::string, bool>;

/// What is really there. Links are not followed.
[[nodiscard]] Entries listingOf(const std::filesystem::path& folder);

/// What is in one and not in the other, for people: "+path" and "-path".
[[nodiscard]] std::vector<std::string> difference(const Entries& from, const Entries& to);

/// What a folder must hold according to the reported changes, beginning with what was there. The changes have to make
/// sense: what is added was not there and its folder is, what is removed or modified is there, and an emptied folder
/// goes last. What does not is kept as a complaint.
class Replica {
public:
    explicit Replica(Entries entries) : m_entries(std::move(entries)) {}

    void apply(const Change& change);

    [[nodiscard]] const Entries& entries() const noexcept { return m_entries; }
    [[nodiscard]] const std::vector<std::string>& complaints() const noexcept { return m_complaints; }

private:
    void add(const Change& change);
    void remove(const Change& change);
    [[nodiscard]] bool hasChildren(const std::string& folder) const;
    void complain(const std::string& what, const Change& change) { m_complaints.push_back(what + ": " + change.path); }

    Entries m_entries;
    std::vector<std::string> m_complaints;
};

}  // namespace jstore::test
