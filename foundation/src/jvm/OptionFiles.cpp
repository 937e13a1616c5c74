#include "jvm/OptionFiles.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

#include "jvm/EnvironmentOptions.h"
#include "jvm/Failure.h"
#include "jvm/RegularFile.h"

namespace storage::jvm::detail {

namespace {

constexpr std::string_view OptionsFile = "-XX:VMOptionsFile=";
constexpr std::string_view FlagsFile = "-XX:Flags=";
constexpr std::size_t LongestFile = std::size_t{1024} * 1024;

std::string contentsOf(const std::string& path, const std::string& origin) {
    const RegularFile file(path);
    const bool tooLong = file.size() > LongestFile;
    if (!file.problem().empty() || tooLong) {
        fail(origin + ": the options file " + path +
             " cannot be read: " + (tooLong ? "larger than 1 MiB" : file.problem()));
    }
    return file.read(0, LongestFile);
}

std::vector<std::string> optionsIn(const std::string& path, const std::string& origin) {
    std::vector<std::string> options = splitOptions(contentsOf(path, origin), path);
    const auto nested = std::ranges::find_if(options, [](const std::string& option) {
        return option.starts_with(OptionsFile) || option.starts_with(FlagsFile);
    });
    if (nested != options.end()) {
        fail(origin + ": the options file " + path + " names another: " + *nested);
    }
    return options;
}

/// The file holds flags such as `+UseSerialGC` and `MaxHeapSize=1g`, separated by white space; a `#` begins a remark.
std::vector<std::string> flagsIn(const std::string& path, const std::string& origin) {
    std::string text;
    std::istringstream lines(contentsOf(path, origin));
    for (std::string line; std::getline(lines, line);) {
        text += line.substr(0, line.find('#')) + '\n';
    }
    std::vector<std::string> flags = splitOptions(text, path);
    std::ranges::for_each(flags, [](std::string& flag) { flag.insert(0, "-XX:"); });
    return flags;
}

}  // namespace

std::vector<std::string> withOptionFiles(const std::vector<std::string>& options, const std::string& origin) {
    std::vector<std::string> flags;
    std::vector<std::string> others;
    for (const std::string& option : options) {
        if (option.starts_with(OptionsFile)) {
            std::ranges::move(optionsIn(option.substr(OptionsFile.size()), origin), std::back_inserter(others));
        } else if (option.starts_with(FlagsFile)) {
            std::ranges::move(flagsIn(option.substr(FlagsFile.size()), origin), std::back_inserter(flags));
        } else {
            others.push_back(option);
        }
    }
    std::ranges::move(others, std::back_inserter(flags));
    return flags;
}

}  // namespace storage::jvm::detail
