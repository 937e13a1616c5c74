#include <fstream>
#include <stdexcept>
#include <string>

#include "Locations.h"
#include "Machine.h"
#include "parts/Parts.h"

namespace bench {

namespace {

using foundation::storage::provider::FolderEntry;
using foundation::storage::provider::IProvider;

/// A figure of /proc/self/status, in bytes.
double statusBytes(const std::string& key) {
    std::ifstream in("/proc/self/status");
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with(key + ":")) {
            return std::stod(line.substr(key.size() + 1)) * 1024;
        }
    }
    throw std::runtime_error("/proc/self/status has no " + key);
}

/// From now on the peak counts anew.
void resetPeak() {
    std::ofstream out("/proc/self/clear_refs");
    out << 5;
    out.close();
    if (!out) {
        throw std::runtime_error("the peak of the resident memory cannot be reset");
    }
}

/// What an entry takes: itself, and the characters with their final zero where they do not fit into it.
std::size_t bytesOf(const FolderEntry& entry) {
    const std::size_t inlineCapacity = std::u16string().capacity();
    const std::size_t length = entry.name().size();
    return sizeof(FolderEntry) + (length > inlineCapacity ? (length + 1) * sizeof(char16_t) : 0);
}

/// The bytes of a listing's entries, which its iterator owns.
double resultBytes(foundation::storage::provider::IFolderEntryIterator& entries) {
    double bytes = 0;
    while (entries.hasMore()) {
        entries.advance();
        bytes += static_cast<double>(bytesOf(entries.getCurrent()));
    }
    return bytes;
}

/// Lets Java compile what a listing calls, so that its compilers are quiet when it counts.
void warmUp(const Machine& machine, const IProvider& provider) {
    machine.setListing(1000);
    for (int i = 0; i < 100; ++i) {
        static_cast<void>(provider.listAll(Folder.iri));
    }
}

}  // namespace

std::vector<Row> measureMemory(const Effort& effort) {
    // With its heap resident from the start, the virtual machine adds nothing to the rise.
    const Machine machine({"-XX:+AlwaysPreTouch"});
    const auto provider = machine.makeProvider();
    warmUp(machine, *provider);
    machine.setListing(effort.largestListing);
    resetPeak();
    const double before = statusBytes("VmRSS");
    const auto entries = provider->listAll(Folder.iri);
    const double rise = statusBytes("VmHWM") - before;
    Row row;
    row.name = "listAll/" + std::to_string(effort.largestListing) + " peak memory";
    row.group = "memory";
    row.unit = Unit::Bytes;
    row.floor = resultBytes(*entries);
    row.bridge = rise;
    row.target = 1.3;
    row.ratioLow = row.ratio();
    row.ratioHigh = row.ratio();
    return {row};
}

}  // namespace bench
