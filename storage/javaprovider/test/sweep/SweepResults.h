#pragma once

#include <boost/any.hpp>

#include <array>
#include <memory>
#include <string>

#include "data/Listing.h"
#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/ExtendedAttributes.h"

// Results of operations as text.
namespace storage::javaprovider::test {

[[nodiscard]] inline std::string word(bool value) { return value ? "true" : "false"; }

/// The names, each followed by a blank; folders have a slash.
[[nodiscard]] inline std::string namesOf(
    const std::unique_ptr<foundation::storage::provider::IFolderEntryIterator>& entries) {
    std::string names;
    for (const auto& [name, type] : childrenOf(entries)) {
        names.append(name.begin(), name.end());
        names += type == foundation::storage::provider::EntryType::Folder ? "/ " : " ";
    }
    return names;
}

[[nodiscard]] inline std::string attributesOf(const foundation::storage::provider::ExtendedAttributes& attributes) {
    std::string text;
    for (const auto& [name, value] : attributes.all()) {
        text += name + "=" + boost::any_cast<std::string>(value) + " ";
    }
    return text;
}

/// How many bytes were read, and which.
[[nodiscard]] inline std::string bytesOf(foundation::storage::provider::ByteStream& stream) {
    std::array<char, 4> memory{};
    const auto count = stream.read(memory.data(), memory.size());
    return std::to_string(count) + " " + std::string(memory.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
}

}  // namespace storage::javaprovider::test
