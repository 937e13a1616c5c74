#include <fmt/format.h>
#include <langinfo.h>

#include <clocale>
#include <system_error>

#include "base/Text.h"
#include "doctor/Checks.h"
#include "java/ClassPath.h"
#include "java/JavaProperty.h"

namespace jstore::doctor {

namespace fs = std::filesystem;

namespace {

constexpr const char* ContractClass = "com.corvallen.storage.provider.ProviderException";

std::string hintFor(const ClassPathEntry& entry) {
    if (entry.origin == "installation") {
        return "this installation of jstore is incomplete; install it again";
    }
    return "correct or remove it in " + entry.origin;
}

Check whereIs(const std::string& className, const std::vector<ClassPathEntry>& sound) {
    for (const ClassPathEntry& entry : sound) {
        if (holdsClass(entry, className)) {
            return {Mark::Ok, "class", fmt::format("{} in {}", dotted(className), printable(entry.path.string())), {}};
        }
    }
    return {Mark::Failure, "class", dotted(className) + " is not on the class path",
            "add its jar with --class-path or JSTORE_CLASS_PATH"};
}

Check checkOf(const Mount& mount) {
    const std::string subject = "mount " + mount.name;
    const std::optional<fs::path> target = localTarget(mount);
    if (!target) {
        return {Mark::Ok, subject, mount.uri + ": not a local file system; its target was not checked", {}};
    }
    std::error_code error;
    const fs::file_status status = fs::status(*target, error);
    if (!fs::exists(status)) {
        return {Mark::Failure, subject, mount.uri + ": nothing is at " + printable(target->string()),
                "correct the mount or create its target"};
    }
    if (mount.uri.starts_with("file:") && !fs::is_directory(status)) {
        return {Mark::Failure, subject, mount.uri + ": not a folder",
                "mount an archive as NAME=jar:file:///path/archive.zip"};
    }
    return {Mark::Ok, subject, mount.uri, {}};
}

/// The character encoding that the environment asks for, whatever this process has set.
std::string environmentCodeset() {
    const locale_t environment = ::newlocale(LC_CTYPE_MASK, "", nullptr);
    if (environment == nullptr) {
        return {};
    }
    std::string codeset = ::nl_langinfo_l(CODESET, environment);
    ::freelocale(environment);
    return codeset;
}

}  // namespace

Checks classPath(const Options& options) {
    Checks checks;
    std::vector<ClassPathEntry> sound;
    for (const ClassPathEntry& entry : classPathOf(options)) {
        const std::string problem = problemOf(entry);
        const std::string detail = fmt::format("{} ({})", printable(entry.path.string()), entry.origin);
        if (problem.empty()) {
            sound.push_back(entry);
            checks.push_back({Mark::Ok, "class path", detail, {}});
        } else {
            checks.push_back({Mark::Failure, "class path", fmt::format("{}: {}", detail, problem), hintFor(entry)});
        }
    }
    checks.push_back(whereIs(ContractClass, sound));
    checks.push_back(whereIs(options.provider, sound));
    return checks;
}

Checks mounts(const Options& options) {
    Checks checks;
    for (const Mount& mount : options.mounts) {
        checks.push_back(checkOf(mount));
    }
    return checks;
}

Check locale(JNIEnv* env) {
    const std::string codeset = environmentCodeset();
    const std::optional<std::string> java = env == nullptr ? std::nullopt : javaProperty(env, "sun.jnu.encoding");
    const std::string asks = codeset.empty() ? "the environment names a locale that is not installed"
                                             : "the environment asks for " + codeset;
    if (!java) {
        return {Mark::Ok, "locale", asks, {}};
    }
    if (*java != "UTF-8") {
        return {Mark::Failure, "locale", fmt::format("{}; Java uses {} for file names", asks, *java),
                "names outside ASCII cannot be used; set LC_ALL=C.UTF-8"};
    }
    const char* const set = codeset == "UTF-8" ? "" : ", set by jstore";
    return {Mark::Ok, "locale", fmt::format("{}; Java uses UTF-8 for file names{}", asks, set), {}};
}

}  // namespace jstore::doctor
