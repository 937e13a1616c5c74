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
using storage::jvm::JavaCandidate;

namespace {

CommandError failed(std::string code, std::string text, ExitCode exitCode = ExitCode::Failed) {
    return CommandError({std::move(code), {}, std::move(text), exitCode});
}

std::string placesTried(const std::vector<JavaCandidate>& candidates) {
    std::string places;
    for (const JavaCandidate& candidate : candidates) {
        places += (places.empty() ? "" : "; ") + describe(candidate);
    }
    return places.empty() ? "no place to look in" : places;
}

}  // namespace

void checkClassPath(const Options& options) {
    for (const ClassPathEntry& entry : classPathOf(options)) {
        const std::string problem = problemOf(entry);
        if (!problem.empty()) {
            const std::string path = printable(entry.path.string());
            throw failed("ClassPath", fmt::format("class path entry {} ({}): {}", path, entry.origin, problem));
        }
    }
}

std::shared_ptr<EmbeddedJVM> startJava(const Options& options, std::vector<JavaCandidate> candidates) {
    const JavaCandidate* const promising = usable(candidates);
    const std::string library = promising == nullptr ? std::string() : printable(promising->libjvm.string());
    const JavaCandidate* const java = storage::jvm::loadJava(candidates);
    if (java == nullptr) {
        const bool given = !options.javaHome.empty() && !library.empty();
        const std::string why =
            given ? library + " cannot be loaded" : placesTried(candidates) + " (see jstore doctor)";
        throw failed("NoJava", "no Java found: " + why, ExitCode::NoJava);
    }
    try {
        return EmbeddedJVM::start(virtualMachineOptions(options, *java));
    } catch (const std::exception& error) {
        throw failed("Java", fmt::format("Java does not start: {}", error.what()));
    }
}

Session::Session(const Options& options) {
    checkClassPath(options);
    m_jvm = startJava(options, javaCandidates(options));
    m_attachment.emplace(m_jvm);
    m_backEnd.emplace(m_jvm, options);
}

}  // namespace jstore
