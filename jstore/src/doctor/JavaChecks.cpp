#include <dlfcn.h>
#include <fmt/format.h>

#include <chrono>
#include <csignal>
#include <cstring>

#include "base/Problem.h"
#include "base/Text.h"
#include "doctor/Checks.h"
#include "fl/i18n/text.h"
#include "foundation/storage/provider/Exception.h"
#include "java/ClassPath.h"
#include "java/JavaProperty.h"
#include "java/MachineOptions.h"
#include "java/Session.h"

namespace jstore::doctor {

using storage::jvm::JavaCandidate;
using storage::jvm::OldestJava;

namespace {

/// The home's version, to end a line with; empty if the home states none.
std::string versionNote(const JavaCandidate& candidate) {
    return candidate.version.empty() ? "" : " (Java " + candidate.version + ")";
}

Check checkOf(const JavaCandidate& candidate, const JavaCandidate* chosen) {
    if (candidate.problem.empty()) {
        const char* const role = &candidate == chosen ? ": used" : ": not needed";
        return {Mark::Ok, "java home", describe(candidate) + versionNote(candidate) + role, {}};
    }
    const bool named = !candidate.home.empty() && candidate.origin != "distribution folder";
    return {named ? Mark::Warning : Mark::Ok, "java home", describe(candidate),
            named ? "correct " + candidate.origin : std::string()};
}

/// The file of the library that the signal's handler is in; empty for the default, for "ignored" and when unknown.
std::string handlerLibrary(int signal) {
    struct sigaction action = {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_DFL || action.sa_handler == SIG_IGN) {
        return {};
    }
    Dl_info info = {};
    const auto* const handler = reinterpret_cast<void*>(action.sa_sigaction);
    return ::dladdr(handler, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
}

bool isJavas(int signal) { return handlerLibrary(signal).find("libjvm") != std::string::npos; }

std::string namesOf(const std::vector<int>& signals, bool javas) {
    std::string names;
    for (const int signal : signals) {
        if (isJavas(signal) == javas) {
            names += (names.empty() ? "SIG" : ", SIG") + std::string(::sigabbrev_np(signal));
        }
    }
    return names;
}

/// The finding about a mount without a known problem, after the provider has opened it.
Check opened(const BackEnd& backEnd, const Mount& mount, Check seemed) {
    using foundation::storage::provider::Exception;
    const Location root(foundation::storage::provider::StorageIRI(fl::i18n::to_ustring("java://" + mount.name + "/")));
    try {
        static_cast<void>(backEnd.provider().folderExists(root.iri()));
        return {Mark::Ok, std::move(seemed.subject), mount.uri, {}};
    } catch (const Exception& error) {
        Problem problem = describe(error, root);
        addReason(problem, backEnd.reasonOf(error));
        return {Mark::Failure, std::move(seemed.subject), messageOf(problem), "correct the mount or its target"};
    }
}

}  // namespace

Checks openedMounts(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Options& options) {
    Checks checks = mounts(options);
    if (checks.empty() || slashed(options.provider) != slashed(DefaultProvider)) {
        return checks;
    }
    try {
        const BackEnd backEnd(jvm, options);
        for (std::size_t at = 0; at < checks.size(); ++at) {
            if (checks[at].mark == Mark::Ok) {
                checks[at] = opened(backEnd, options.mounts[at], checks[at]);
            }
        }
    } catch (const CommandError&) {
        // The provider cannot be made, which is a finding of its own.
    }
    return checks;
}

Checks javaHomes(const std::vector<JavaCandidate>& candidates) {
    const JavaCandidate* const chosen = usable(candidates);
    Checks checks;
    for (const JavaCandidate& candidate : candidates) {
        checks.push_back(checkOf(candidate, chosen));
    }
    if (chosen == nullptr) {
        checks.push_back({Mark::Failure, "java", "no usable Java was found",
                          "install Java 11 or newer, set JAVA_HOME, or use --java-home"});
    } else {
        checks.push_back({Mark::Ok, "libjvm", chosen->libjvm.string(), {}});
    }
    return checks;
}

Checks runningJava(JNIEnv* env, const storage::jvm::EmbeddedJVM& jvm) {
    const std::string version = javaProperty(env, "java.version").value_or("unknown");
    const std::string name = javaProperty(env, "java.vm.name").value_or("unknown machine");
    const std::string home = javaProperty(env, "java.home").value_or("unknown home");
    const char* const origin = jvm.startedHere() ? "started" : "found running";
    const std::string detail = fmt::format("{}, {}, from {}: {}", version, name, home, origin);
    if (storage::jvm::majorVersion(version) < OldestJava) {
        return {{Mark::Failure, "java version", detail, fmt::format("use Java {} or newer", OldestJava)}};
    }
    return {{Mark::Ok, "java version", detail, {}}};
}

Checks signals() {
    const std::string caught = namesOf({SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGPIPE}, /*javas=*/true);
    const std::string taken = namesOf({SIGINT, SIGTERM, SIGHUP, SIGQUIT}, /*javas=*/true);
    const std::string free = namesOf({SIGINT, SIGTERM, SIGHUP, SIGQUIT}, /*javas=*/false);
    Checks checks{{Mark::Ok, "signals", "handled by Java: " + caught, {}}};
    if (taken.empty()) {
        checks.push_back({Mark::Ok, "signals", "left to jstore: " + free, {}});
    } else {
        checks.push_back(
            {Mark::Failure, "signals", "taken by Java: " + taken, "leave out --jvm-option -XX:-ReduceSignalUsage"});
    }
    return checks;
}

Check provider(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Options& options) {
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    try {
        BackEnd backEnd(jvm, options);
        if (const std::optional<Problem> problem = backEnd.end()) {
            throw CommandError(*problem);
        }
    } catch (const CommandError& error) {
        return {Mark::Failure, "provider", messageOf(error.problem()), "check --provider and --class-path"};
    }
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    return {
        Mark::Ok, "provider", fmt::format("{} created and disposed of in {} ms", options.provider, time.count()), {}};
}

}  // namespace jstore::doctor
