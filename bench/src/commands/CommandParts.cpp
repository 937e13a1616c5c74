#include "commands/CommandParts.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <functional>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

#include "Samples.h"
#include "commands/Command.h"

namespace bench {

namespace {

namespace fs = std::filesystem;
using CommandLine = std::vector<std::string>;

/// Makes the command of one run; each run has a number of its own.
using MakeCommand = std::function<CommandLine(int)>;

/// Runs both commands in turn.
Row compare(std::string name, std::string group, std::optional<double> target, int roundCount, const MakeCommand& floor,
            const MakeCommand& bridge) {
    Rounds rounds;
    for (int round = 0; round < roundCount; ++round) {
        rounds.floor.push_back(timeOf(floor(2 * round)));
        rounds.bridge.push_back(timeOf(bridge(2 * round + 1)));
    }
    Row row;
    row.name = std::move(name);
    row.group = std::move(group);
    row.floor = median(rounds.floor);
    row.bridge = median(rounds.bridge);
    row.target = target;
    row.ratioLow = quantile(rounds.ratios(), 0.25);
    row.ratioHigh = quantile(rounds.ratios(), 0.75);
    return row;
}

/// Data that does not shrink when something compresses it.
std::vector<char> randomBytes(std::size_t count) {
    std::mt19937_64 generator(20260101);
    std::vector<char> bytes(count);
    std::generate(bytes.begin(), bytes.end(), [&generator] { return static_cast<char>(generator()); });
    return bytes;
}

void writeFile(const fs::path& file, const char* data, std::size_t count, std::size_t repeat) {
    std::ofstream out(file, std::ios::binary);
    for (std::size_t i = 0; i < repeat; ++i) {
        out.write(data, static_cast<std::streamsize>(count));
    }
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

/// A tree of files of 1 to 16 KiB, a hundred in a folder.
void writeSmallFiles(const fs::path& root, int count) {
    constexpr int FilesPerFolder = 100;
    const std::vector<char> data = randomBytes(std::size_t{16} << 10);
    for (int i = 0; i < count; ++i) {
        const fs::path folder = root / std::to_string(i / FilesPerFolder);
        if (i % FilesPerFolder == 0) {
            fs::create_directories(folder);
        }
        const std::size_t size = (1 + static_cast<std::size_t>(i) % 16) << 10;
        writeFile(folder / ("document-" + std::to_string(i) + ".txt"), data.data(), size, 1);
    }
}

std::string toJava(const fs::path& path) { return "java://" + path.string(); }

}  // namespace

std::vector<Row> measureStartUp(const Programs& programs) {
    const fs::path folder = programs.work / "folder";
    fs::create_directories(folder);
    for (int i = 0; i < 10; ++i) {
        writeFile(folder / ("document-" + std::to_string(i) + ".txt"), "", 0, 0);
    }
    const CommandLine word = {"java", "-cp", programs.wordJar.string(), "com.corvallen.bench.Word"};
    const CommandLine list = {programs.jstore.string(), "ls", toJava(folder)};
    return {compare(
        "jstore ls", "start-up", 1.5, programs.rounds, [&word](int) { return word; }, [&list](int) { return list; })};
}

std::vector<Row> measureCopies(const Programs& programs) {
    const fs::path large = programs.work / "large.bin";
    const fs::path small = programs.work / "small";
    // Each run copies to a place of its own, and nothing is removed before the end: some file systems look for room
    // among what was removed just before, which takes longer than the copy.
    const fs::path targets = programs.work / "targets";
    const std::size_t mebibytes = programs.smoke ? 1 : 1024;
    const int fileCount = programs.smoke ? 10 : 20'000;
    fs::remove_all(targets);
    fs::create_directories(targets);
    writeFile(large, randomBytes(std::size_t{1} << 20).data(), std::size_t{1} << 20, mebibytes);
    writeSmallFiles(small, fileCount);
    const auto target = [&targets](const char* kind, int run) { return targets / (kind + std::to_string(run)); };
    const std::string jstore = programs.jstore.string();
    const int roundCount = std::min(programs.rounds, 5);
    const Row largeFile = compare(
        "jstore cp/1 GiB", "copies", std::nullopt, roundCount,
        [&](int run) {
            return CommandLine{"cp", large.string(), target("large", run).string()};
        },
        [&](int run) {
            return CommandLine{jstore, "cp", large.string(), toJava(target("large", run))};
        });
    const Row smallFiles = compare(
        "jstore cp -r/20000 files", "copies", std::nullopt, roundCount,
        [&](int run) {
            return CommandLine{"cp", "-r", small.string(), target("small", run).string()};
        },
        [&](int run) {
            return CommandLine{jstore, "cp", "-r", small.string(), toJava(target("small", run))};
        });
    fs::remove_all(targets);
    return {largeFile, smallFiles};
}

}  // namespace bench
