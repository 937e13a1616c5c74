#include "jvm/MachineOptions.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "jvm/EnvironmentOptions.h"
#include "jvm/Failure.h"

namespace storage::jvm::detail {

namespace fs = std::filesystem;

namespace {

constexpr char PathSeparator = ':';

/// Java passes silently over what is not there; a host would learn of it by a missing class, far from the cause.
void requireUsable(const fs::path& entry) {
    std::error_code error;
    if (!fs::exists(entry, error)) {
        fail("Not found on the class path: " + entry.string());
    }
    if (entry.native().find(PathSeparator) != fs::path::string_type::npos) {
        fail("A colon cannot stand in an entry of the class path: " + entry.string());
    }
}

/// An empty class path is the working folder to Java, and who fills that folder should not choose the host's classes:
/// a device that holds none stands for it.
std::string classPathOption(const std::vector<fs::path>& classPath) {
    std::string joined;
    for (const fs::path& entry : classPath) {
        requireUsable(entry);
        joined += (joined.empty() ? "" : std::string(1, PathSeparator)) + entry.string();
    }
    return "-Djava.class.path=" + (joined.empty() ? "/dev/null" : joined);
}

void append(std::vector<std::string>& all, std::vector<std::string> more) {
    std::ranges::move(more, std::back_inserter(all));
}

}  // namespace

std::vector<std::string> machineOptions(const EmbeddedJVMOptions& options) {
    std::vector<std::string> all = environmentOptions("JAVA_TOOL_OPTIONS");
    // Without the last two, a machine that leaves the signals alone starts the attach listener, and every machine
    // leaves a file in /tmp.
    append(all, {"-Xrs", "-XX:+DisableAttachMechanism", "-XX:-UsePerfData"});
    if (options.maxHeapMiB != 0) {
        all.push_back("-Xmx" + std::to_string(options.maxHeapMiB) + "m");
    }
    all.push_back(classPathOption(options.classPath));
    append(all, options.jvmOptions);
    append(all, environmentOptions("_JAVA_OPTIONS"));
    return all;
}

}  // namespace storage::jvm::detail
