#include "java/Session.h"

#include <fmt/format.h>

#include <exception>
#include <string>

#include "base/Problem.h"
#include "base/Text.h"
#include "java/ClassPath.h"
#include "java/MachineOptions.h"

namespace jstore {

using storage::jvm::EmbeddedJVM;

namespace {

CommandError failed(std::string code, std::string text, ExitCode exitCode = ExitCode::Failed) {
    return CommandError({std::move(code), {}, std::move(text), exitCode});
}

std::string placesTried(const std::vector<storage::jvm::JavaCandidate>& candidates) {
    std::string places;
    for (const auto& candidate : candidates) {
        places += (places.empty() ? "" : "; ") + describe(candidate);
    }
    return places.empty() ? "no place to look in" : places;
}

}  // namespace

void checkClassPath(const Options& options) {
    for (const auto& entry : classPathOf(options)) {
        const auto problem = problemOf(entry);
        if (!problem.empty()) {
            const auto path = printable(entry.path.string());
            throw failed("ClassPath", fmt::format("class path entry {} ({}): {}", path, entry.origin, problem));
        }
    }
}

std::shared_ptr<EmbeddedJVM> startJava(const Options& options) {
    const auto candidates = javaCandidates(options);
    const auto* const java = usable(candidates);
    if (java == nullptr) {
        throw failed("NoJava", "no Java found: " + placesTried(candidates), ExitCode::NoJava);
    }
    std::shared_ptr<EmbeddedJVM> jvm;
    try {
        jvm = EmbeddedJVM::start(virtualMachineOptions(options, *java));
    } catch (const std::exception& error) {
        throw failed("Java", fmt::format("Java does not start: {}", error.what()));
    }
    // The start goes on to the next place when a library cannot be loaded; a home that was given is meant alone.
    if (!options.javaHome.empty() && jvm->libjvm() != candidates.front().libjvm) {
        const auto library = printable(candidates.front().libjvm.string());
        throw failed("NoJava", fmt::format("no Java found: {} cannot be loaded", library), ExitCode::NoJava);
    }
    return jvm;
}

Session::Session(const Options& options) {
    checkClassPath(options);
    m_jvm = startJava(options);
    m_attachment.emplace(m_jvm);
    m_backEnd.emplace(m_jvm, options);
}

}  // namespace jstore
