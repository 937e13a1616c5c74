#include <fmt/format.h>
#include <langinfo.h>
#include <locale.h>

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
        return "this installation of jstore is not complete: install it again";
    }
    return "correct or remove it in " + entry.origin;
}

Check whereIs(const std::string& className, const std::vector<ClassPathEntry>& sound) {
    for (const auto& entry : sound) {
        if (holdsClass(entry, className)) {
            return {Mark::Ok, "class", fmt::format("{} in {}", dotted(className), printable(entry.path.string())), {}};
        }
    }
    return {Mark::Failure, "class", dotted(className) + " is in no entry of the class path",
            "add its jar with --class-path or JSTORE_CLASS_PATH"};
}

Check checkOf(const Mount& mount) {
    const auto subject = "mount " + mount.name;
    const auto target = localTarget(mount);
    if (!target) {
        return {Mark::Ok, subject, mount.uri + ": not a local file system, so its target was not looked for", {}};
    }
    std::error_code error;
    const auto status = fs::status(*target, error);
    if (!fs::exists(status)) {
        return {Mark::Failure, subject, mount.uri + ": nothing is at " + printable(target->string()),
                "correct the mount, or create its target"};
    }
    if (mount.uri.starts_with("file:") && !fs::is_directory(status)) {
        return {Mark::Failure, subject, mount.uri + ": not a folder",
                "an archive is mounted as NAME=jar:file:///path/archive.zip"};
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
    for (const auto& entry : classPathOf(options)) {
        const auto problem = problemOf(entry);
        const auto detail = fmt::format("{} ({})", printable(entry.path.string()), entry.origin);
        if (problem.empty()) {
            sound.push_back(entry);
            checks.push_back({Mark::Ok, "class path", detail, {}});
        } else {
            checks.push_back({Mark::Failure, "class path", detail + ": " + problem, hintFor(entry)});
        }
    }
    checks.push_back(whereIs(ContractClass, sound));
    checks.push_back(whereIs(options.provider, sound));
    return checks;
}

Checks mounts(const Options& options) {
    Checks checks;
    for (const auto& mount : options.mounts) {
        checks.push_back(checkOf(mount));
    }
    return checks;
}

Check locale(JNIEnv* env) {
    const auto codeset = environmentCodeset();
    const auto java = env == nullptr ? std::nullopt : javaProperty(env, "sun.jnu.encoding");
    const auto asks = codeset.empty() ? "the environment names a locale that this system lacks"
                                      : "the environment asks for " + codeset;
    if (!java) {
        return {Mark::Ok, "locale", asks, {}};
    }
    if (*java != "UTF-8") {
        return {Mark::Failure, "locale", fmt::format("{}; Java names files in {}", asks, *java),
                "names outside ASCII cannot be used: set LC_ALL=C.UTF-8"};
    }
    const auto* const set = codeset == "UTF-8" ? "" : ", set while Java started";
    return {Mark::Ok, "locale", fmt::format("{}; Java names files in UTF-8{}", asks, set), {}};
}

}  // namespace jstore::doctor
