#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <utility>

#include "base/Problem.h"
#include "java/Session.h"
#include "options/Options.h"
#include "output/Progress.h"
#include "output/Reporter.h"
#include "work/Hints.h"

namespace jstore {

/// What a verb works with: the common options, the reporter, and the provider, which starts Java when it is first
/// asked for. Used only by the main thread.
class Context {
public:
    explicit Context(Options options)
        : m_options(std::move(options)),
          m_progress(m_options.progress && m_options.logLevel == LogLevel::Off),
          m_reporter(m_options.json) {
        m_reporter.setPause([this] { return m_progress.pause(); });
    }

    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    [[nodiscard]] const Options& options() const noexcept { return m_options; }
    [[nodiscard]] Reporter& reporter() noexcept { return m_reporter; }
    [[nodiscard]] Progress& progress() noexcept { return m_progress; }

    /// Starts Java and the back end unless they are up. Throws CommandError as Session does. Blocks until both are up.
    void startBackEnd() {
        if (!m_session) {
            m_session.emplace(m_options);
        }
    }

    /// The provider. Calls startBackEnd() first.
    [[nodiscard]] const foundation::storage::provider::IProvider& provider() {
        startBackEnd();
        return m_session->provider();
    }

    /// As BackEnd::hasFeature(). Calls startBackEnd() first.
    [[nodiscard]] bool hasFeature(foundation::storage::provider::ExtendedFeature feature) {
        startBackEnd();
        return m_session->hasFeature(feature);
    }

    /// The running machine. Call it only after startBackEnd() or provider().
    [[nodiscard]] const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm() const { return m_session.value().jvm(); }

    /// The error of the operation that has just failed, as a problem with the back end's reason and a hint.
    [[nodiscard]] Problem problemOf(const std::exception& error, const Location& subject) const {
        Problem problem = describe(error, subject);
        const auto* const reported = dynamic_cast<const foundation::storage::provider::Exception*>(&error);
        if (reported != nullptr && m_session) {
            addReason(problem, m_session->reasonOf(*reported));
        }
        addHint(problem, m_options);
        return problem;
    }

    /// Ends the back end if it was started. Returns its report of what may not have been written. Call it once, at the
    /// end.
    [[nodiscard]] std::optional<Problem> end() {
        if (!m_session) {
            return std::nullopt;
        }
        m_progress.finishing();
        return m_session->end();
    }

private:
    Options m_options;
    Progress m_progress;
    Reporter m_reporter;
    std::optional<Session> m_session;
};

}  // namespace jstore
