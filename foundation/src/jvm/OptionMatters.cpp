#include "jvm/OptionMatters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <set>

namespace storage::jvm::detail {

namespace {

constexpr std::string_view Flag = "-XX:";
constexpr std::string_view Collector = "collector";
constexpr std::string_view Heap = "heap";
constexpr std::string_view Sharing = "sharing";
constexpr std::string_view Archive = "archive";
constexpr std::string_view Compilation = "compilation";
constexpr std::string_view Signals = "signals";
constexpr std::string_view Attaching = "attaching";
constexpr std::string_view UsedArchive = "-XX:SharedArchiveFile=";
constexpr std::string_view WrittenArchive = "-XX:ArchiveClassesAtExit=";
constexpr std::string_view CacheOutput = "-XX:AOTCacheOutput=";

/// What each kind of options decides. Flags are without their sign and value.
struct Kind {
    std::string_view begin;
    std::array<std::string_view, 2> matters;
};

constexpr std::array Kinds{
    Kind{"-Xmx", {Heap}},
    Kind{"-mx", {Heap}},
    Kind{"MaxHeapSize", {Heap}},
    Kind{"MaxRAM", {Heap}},
    Kind{"AggressiveHeap", {Heap, Collector}},
    Kind{"-Xshare:auto", {Sharing}},
    Kind{"-Xshare:", {Sharing, Archive}},
    Kind{"SharedArchiveFile", {Archive}},
    Kind{"SharedClassListFile", {Archive}},
    Kind{"ArchiveClassesAtExit", {Archive}},
    Kind{"AutoCreateSharedArchive", {Archive}},
    Kind{"RecordDynamicDumpInfo", {Archive}},
    Kind{"DumpSharedSpaces", {Sharing, Archive}},
    Kind{"DynamicDumpSharedSpaces", {Sharing, Archive}},
    Kind{"UseSharedSpaces", {Sharing, Archive}},
    Kind{"RequireSharedSpaces", {Sharing, Archive}},
    Kind{"AOTMode", {Sharing, Archive}},
    Kind{"AOTCache", {Sharing, Archive}},
    Kind{"AOTConfiguration", {Sharing, Archive}},
    Kind{"CacheDataStore", {Sharing, Archive}},
    Kind{"-Xint", {Compilation}},
    Kind{"-Xcomp", {Compilation}},
    Kind{"-Xmixed", {Compilation}},
    Kind{"TieredCompilation", {Compilation}},
    Kind{"TieredStopAtLevel", {Compilation}},
    Kind{"CompilationMode", {Compilation}},
    Kind{"UseJVMCICompiler", {Compilation}},
    Kind{"EnableJVMCI", {Compilation}},
    Kind{"-Xrs", {Signals}},
    Kind{"ReduceSignalUsage", {Signals}},
    Kind{"DisableAttachMechanism", {Attaching}},
    Kind{"StartAttachListener", {Attaching}},
};

/// `UseG1GC` of "-XX:+UseG1GC", `MaxHeapSize` of "-XX:MaxHeapSize=1g"; empty for what is no flag.
std::string_view flagName(std::string_view option) {
    if (!option.starts_with(Flag)) {
        return {};
    }
    option.remove_prefix(Flag.size());
    if (option.starts_with('+') || option.starts_with('-')) {
        option.remove_prefix(1);
    }
    return option.substr(0, option.find_first_of(":="));
}

/// What another option of the same kind would decide too.
std::set<std::string_view> mattersOf(std::string_view option) {
    constexpr std::string_view property = "-D";
    const std::string_view name = flagName(option);
    if (option.starts_with(property)) {
        return {option.substr(0, option.find('='))};
    }
    if (name.starts_with("Use") && name.ends_with("GC")) {
        return {Collector};
    }
    const std::string_view key = name.empty() ? option : name;
    const auto kind = std::ranges::find_if(Kinds, [key](const Kind& each) { return key.starts_with(each.begin); });
    if (kind != Kinds.end()) {
        return {kind->matters.begin(), kind->matters.end()};
    }
    return {key};
}

/// The number of bytes in an option such as "-Xms512m"; zero for another option.
std::uint64_t bytesAfter(std::string_view option, std::string_view begin) {
    if (!option.starts_with(begin)) {
        return 0;
    }
    std::uint64_t number = 0;
    const char* const end = option.data() + option.size();
    const char* const unit = std::from_chars(option.data() + begin.size(), end, number).ptr;
    constexpr std::string_view units = "kmgt";
    const auto power = unit == end ? std::string_view::npos : units.find(static_cast<char>(*unit | 0x20));
    return power == std::string_view::npos ? number : number << (10 * (power + 1));
}

/// The smallest heap that the option asks for.
std::uint64_t leastHeap(std::string_view option) {
    static constexpr std::array begins{std::string_view("-Xms"), std::string_view("-ms"),
                                       std::string_view("-XX:InitialHeapSize="), std::string_view("-XX:MinHeapSize="),
                                       std::string_view("-XX:SoftMaxHeapSize=")};
    std::uint64_t most = 0;
    for (const std::string_view begin : begins) {
        most = std::max(most, bytesAfter(option, begin));
    }
    return most;
}

}  // namespace

void stepBack(std::vector<std::string>& defaults, const std::vector<std::string>& chosen) {
    std::set<std::string_view> decided;
    std::uint64_t least = 0;
    for (const std::string& option : chosen) {
        decided.merge(mattersOf(option));
        least = std::max(least, leastHeap(option));
    }
    decided.erase("");
    std::erase_if(defaults, [&](const std::string& option) {
        const auto matters = mattersOf(option);
        const std::uint64_t largest = bytesAfter(option, "-Xmx");
        return (largest != 0 && largest < least) ||
               std::ranges::any_of(matters, [&](std::string_view matter) { return decided.contains(matter); });
    });
}

bool endsInArchive(std::string_view option) {
    return option == "-Xshare:dump" || option == "-XX:+DumpSharedSpaces" || option == "-XX:AOTMode=create";
}

std::string_view usedArchive(std::string_view option) {
    return option.starts_with(UsedArchive) ? option.substr(UsedArchive.size()) : std::string_view();
}

std::string_view writtenArchive(std::string_view option) {
    for (const std::string_view begin : {WrittenArchive, CacheOutput}) {
        if (option.starts_with(begin)) {
            return option.substr(begin.size());
        }
    }
    return {};
}

}  // namespace storage::jvm::detail
