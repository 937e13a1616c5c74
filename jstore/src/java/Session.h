#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "java/BackEnd.h"
#include "options/Options.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/ThreadAttachment.h"

namespace jstore {

/// A running virtual machine, this thread's attachment to it, and a provider of the chosen class.
///
/// Lives on the main thread. The destructor destroys the provider first, then detaches the thread. It leaves the
/// machine running: the process ends soon after, and ending the machine would wait for every thread of a back end.
class Session {
public:
    /// Starts everything; some 50 ms. Throws CommandError when a class path entry is missing or broken, no Java is
    /// found (exit code 7), the machine does not start, or the provider cannot be made.
    explicit Session(const Options& options);

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] const foundation::storage::provider::IProvider& provider() const { return m_backEnd->provider(); }

    [[nodiscard]] const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm() const noexcept { return m_jvm; }

    /// As BackEnd::hasFeature().
    [[nodiscard]] bool hasFeature(foundation::storage::provider::ExtendedFeature feature) const {
        return m_backEnd->hasFeature(feature);
    }

    /// As BackEnd::reasonOf().
    [[nodiscard]] std::string reasonOf(const foundation::storage::provider::Exception& error) const {
        return m_backEnd->reasonOf(error);
    }

    /// Ends the back end, as BackEnd::end() does.
    [[nodiscard]] std::optional<Problem> end() { return m_backEnd->end(); }

private:
    std::shared_ptr<storage::jvm::EmbeddedJVM> m_jvm;
    std::optional<storage::jvm::ThreadAttachment> m_attachment;
    std::optional<BackEnd> m_backEnd;
};

/// Throws CommandError naming the first entry of the class path that is missing or broken: Java itself would silently
/// ignore it.
void checkClassPath(const Options& options);

/// Starts the virtual machine of the first candidate that is usable and can be loaded. Throws CommandError: "NoJava",
/// exit code 7, naming each candidate; or "Java" with the machine's own words when it does not start.
[[nodiscard]] std::shared_ptr<storage::jvm::EmbeddedJVM> startJava(const Options& options,
                                                                   std::vector<storage::jvm::JavaCandidate> candidates);

}  // namespace jstore
