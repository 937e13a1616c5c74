#include "real/FileTree.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>

namespace jstore::test {

namespace fs = std::filesystem;

namespace {

constexpr long NanosecondsInMillisecond = 1'000'000;

bool keepsTime(const timespec& original, const timespec& copy) {
    const auto kept = original.tv_nsec - original.tv_nsec % NanosecondsInMillisecond;
    return copy.tv_sec == original.tv_sec && copy.tv_nsec == kept;
}

std::string difference(const FileTree::Item& original, const FileTree::Item& copy) {
    if (original.isFolder != copy.isFolder) {
        return "another type";
    }
    if (!keepsTime(original.lastModified, copy.lastModified)) {
        return "another time";
    }
    return original.isFolder || sameBytes(original.path, copy.path) ? "" : "other bytes";
}

void add(FileTree& tree, const std::string& name, const fs::directory_entry& entry) {
    struct stat status {};
    const bool found = ::stat(entry.path().c_str(), &status) == 0;
    if (!found || (entry.is_symlink() && S_ISDIR(status.st_mode))) {
        tree.passedOver.push_back(name);
        return;
    }
    tree.items[name] = {entry.path(), S_ISDIR(status.st_mode), static_cast<std::uint64_t>(status.st_size),
                        status.st_mtim};
}

std::ifstream opened(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot be read: " + file.string());
    }
    return stream;
}

}  // namespace

std::size_t FileTree::files() const {
    return static_cast<std::size_t>(
        std::count_if(items.begin(), items.end(), [](const auto& item) { return !item.second.isFolder; }));
}

FileTree readTree(const fs::path& root) {
    FileTree tree;
    const auto prefix = root.native().size() + 1;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        add(tree, entry.path().native().substr(prefix), entry);
    }
    return tree;
}

std::vector<std::string> differences(const FileTree& original, const FileTree& copy) {
    std::vector<std::string> lines;
    for (const auto& [name, item] : original.items) {
        const auto found = copy.items.find(name);
        const auto what = found == copy.items.end() ? "missing" : difference(item, found->second);
        if (!what.empty()) {
            lines.push_back(what + ": " + name);
        }
    }
    for (const auto& [name, item] : copy.items) {
        if (!original.items.contains(name)) {
            lines.push_back("too much: " + name);
        }
    }
    return lines;
}

bool sameBytes(const fs::path& one, const fs::path& other) {
    auto left = opened(one);
    auto right = opened(other);
    std::array<char, 65536> leftBytes{};
    std::array<char, 65536> rightBytes{};
    while (left && right) {
        left.read(leftBytes.data(), leftBytes.size());
        right.read(rightBytes.data(), rightBytes.size());
        const auto count = left.gcount();
        if (count != right.gcount() || !std::equal(leftBytes.begin(), leftBytes.begin() + count, rightBytes.begin())) {
            return false;
        }
    }
    return left.eof() && right.eof();
}

}  // namespace jstore::test
