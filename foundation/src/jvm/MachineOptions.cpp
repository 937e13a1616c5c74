#include "jvm/MachineOptions.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "jvm/EnvironmentOptions.h"
#include "jvm/Failure.h"
#include "jvm/OptionFiles.h"
#include "jvm/OptionMatters.h"

namespace storage::jvm::detail {

namespace fs = std::filesystem;

namespace {

constexpr char PathSeparator = ':';
constexpr const char* ToolVariable = "JAVA_TOOL_OPTIONS";
constexpr const char* LastVariable = "_JAVA_OPTIONS";

using Options = std::vector<std::string>;

/// Java silently skips what is not there, and the host would see only a missing class, far from the cause. A pipe would
/// make Java wait.
void requireUsable(const fs::path& entry) {
    std::error_code error;
    const fs::file_status status = fs::status(entry, error);
    if (!fs::exists(status)) {
        fail("Not found on the class path: " + entry.string());
    }
    if (!fs::is_directory(status) && !fs::is_regular_file(status)) {
        fail("Neither a folder nor a file on the class path: " + entry.string());
    }
    if (entry.native().find(PathSeparator) != fs::path::string_type::npos) {
        fail("An entry of the class path contains a colon: " + entry.string());
    }
}

/// To Java an empty class path is the working folder, and anyone who can write there could choose the host's classes. A
/// device that holds no classes replaces it.
std::string classPathOption(const std::vector<fs::path>& classPath) {
    std::string joined;
    for (const fs::path& entry : classPath) {
        requireUsable(entry);
        joined += (joined.empty() ? "" : std::string(1, PathSeparator)) + entry.string();
    }
    return "-Djava.class.path=" + (joined.empty() ? "/dev/null" : joined);
}

void append(Options& all, const Options& more) { all.insert(all.end(), more.begin(), more.end()); }

/// The host's defaults, and before them those of an embedded machine that they do not replace. Without the second one,
/// a machine started with -Xrs starts the attach listener; without the third, every machine leaves a file in /tmp.
Options defaultsFor(const EmbeddedJVMOptions& options) {
    Options all{"-Xrs", "-XX:+DisableAttachMechanism", "-XX:-UsePerfData", "-Xmx512m"};
    stepBack(all, options.defaultOptions);
    append(all, options.defaultOptions);
    return all;
}

/// Empty where Java or the defaults decide the size.
Options heapOption(const EmbeddedJVMOptions& options) {
    const std::size_t size = options.maxHeapMiB.value_or(0);
    return size == 0 ? Options() : Options{"-Xmx" + std::to_string(size) + "m"};
}

/// Whether both exist and are the same file.
bool isSameFile(std::string_view one, std::string_view other) {
    std::error_code error;
    return fs::equivalent(one, other, error);
}

[[noreturn]] void refuse(const std::string& origin, const std::string& option, const char* reason) {
    fail(origin + ": " + option + reason);
}

void requireHarmless(const Options& given, const std::string& origin, const Options& defaults) {
    for (const std::string& option : given) {
        if (endsInArchive(option)) {
            refuse(origin, option,
                   " makes the virtual machine write a class archive and end the process, so it cannot be used here");
        }
        const auto overwritten = [&option](const std::string& used) {
            return !writtenArchive(option).empty() && isSameFile(usedArchive(used), writtenArchive(option));
        };
        if (std::ranges::any_of(defaults, overwritten)) {
            refuse(origin, option, " would overwrite the class archive of this program");
        }
    }
}

}  // namespace

Options machineOptions(const EmbeddedJVMOptions& options) {
    Options defaults = defaultsFor(options);
    const std::array given{
        std::pair(withOptionFiles(environmentOptions(ToolVariable), ToolVariable), std::string(ToolVariable)),
        std::pair(withOptionFiles(options.jvmOptions, "The host's options"), std::string("The host's options")),
        std::pair(withOptionFiles(environmentOptions(LastVariable), LastVariable), std::string(LastVariable))};
    for (const auto& [each, origin] : given) {
        requireHarmless(each, origin, defaults);
    }
    for (const auto& [each, origin] : given) {
        stepBack(defaults, each);
    }
    stepBack(defaults, heapOption(options));
    if (options.maxHeapMiB == 0) {
        stepBack(defaults, {"-Xmx"});
    }
    Options all = given[0].first;
    append(all, defaults);
    append(all, heapOption(options));
    all.push_back(classPathOption(options.classPath));
    append(all, given[1].first);
    append(all, given[2].first);
    return all;
}

std::string describeVariables() {
    constexpr std::size_t longest = 300;
    std::string text;
    for (const char* const name : {ToolVariable, LastVariable}) {
        if (const char* const value = secure_getenv(name); value != nullptr && *value != '\0') {
            const std::string whole = value;
            text += (text.empty() ? "" : ", ") + (name + ("=" + whole.substr(0, longest))) +
                    (whole.size() > longest ? "…" : "");
        }
    }
    return text;
}

}  // namespace storage::jvm::detail
