#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "options/Mount.h"
#include "options/Setting.h"

namespace jstore {

/// What goes to standard error besides error lines.
enum class LogLevel { Off, Failures, Progress, Trace };

/// The back end unless the user names another: any file system that Java supports, by mounts.
inline constexpr const char* DefaultProvider = "com.corvallen.storage.backend.nio.NioProvider";

/// What the options before or after the verb say; the same for every verb.
struct Options {
    /// The back end's class, as the user wrote it.
    std::string provider = DefaultProvider;
    std::vector<std::string> classPath;   ///< each value of --class-path: entries separated by colons
    std::string environmentClassPath;     ///< JSTORE_CLASS_PATH
    std::filesystem::path installedJars;  ///< the folder of the jars that come with this program
    std::filesystem::path archives;       ///< the folder of the class archives
    std::filesystem::path newArchive;     ///< where Java writes a class archive when it ends; empty: nowhere
    std::vector<Mount> mounts;
    std::vector<Setting> settings;
    std::vector<std::string> jvmOptions;
    std::filesystem::path javaHome;  ///< exactly this Java; empty: search for one
    LogLevel logLevel = LogLevel::Off;
    bool json = false;
    bool progress = true;  ///< whether a line may show the progress of a long command
};

}  // namespace jstore
