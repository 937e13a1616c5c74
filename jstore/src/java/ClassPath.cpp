#include "java/ClassPath.h"

#include <unistd.h>

#include <algorithm>
#include <exception>
#include <string_view>
#include <system_error>

#include "java/JarFile.h"

namespace jstore {

namespace fs = std::filesystem;

namespace {

void addEntries(std::string_view list, const char* origin, std::vector<ClassPathEntry>& entries) {
    while (!list.empty()) {
        const std::size_t colon = std::min(list.find(':'), list.size());
        if (colon > 0) {
            entries.push_back({fs::path(list.substr(0, colon)), origin});
        }
        list.remove_prefix(std::min(colon + 1, list.size()));
    }
}

std::string problemOfJar(const fs::path& path) {
    try {
        static_cast<void>(JarFile(path));
        return {};
    } catch (const std::exception& error) {
        return error.what();
    }
}

}  // namespace

std::vector<ClassPathEntry> classPathOf(const Options& options) {
    std::vector<ClassPathEntry> entries;
    for (const std::string& list : options.classPath) {
        addEntries(list, "--class-path", entries);
    }
    addEntries(options.environmentClassPath, "JSTORE_CLASS_PATH", entries);
    for (const char* const jar : {"storage-provider-api.jar", "storage-backends.jar"}) {
        entries.push_back({options.installedJars / jar, "installation"});
    }
    return entries;
}

std::string problemOf(const ClassPathEntry& entry) {
    std::error_code error;
    const fs::file_status status = fs::status(entry.path, error);
    if (!fs::exists(status)) {
        return "cannot be found: " + error.message();
    }
    if (fs::is_directory(status)) {
        return ::access(entry.path.c_str(), R_OK | X_OK) == 0 ? "" : "the folder cannot be read";
    }
    return fs::is_regular_file(status) ? problemOfJar(entry.path) : "neither a folder nor a jar";
}

bool holdsClass(const ClassPathEntry& entry, const std::string& className) {
    const std::string member = slashed(className) + ".class";
    std::error_code error;
    if (fs::is_directory(entry.path, error)) {
        return fs::is_regular_file(entry.path / member, error);
    }
    return JarFile(entry.path).contains(member);
}

std::string slashed(std::string className) {
    std::replace(className.begin(), className.end(), '.', '/');
    return className;
}

std::string dotted(std::string className) {
    std::replace(className.begin(), className.end(), '/', '.');
    return className;
}

}  // namespace jstore
