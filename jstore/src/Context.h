#pragma once

#include <optional>
#include <utility>

#include "Options.h"
#include "Reporter.h"
#include "Session.h"

namespace jstore {

/// What a verb works with: the common options, the reporter, and the provider, which starts Java when it is first
/// asked for. Used by the main thread alone.
class Context {
public:
    explicit Context(Options options) : m_options(std::move(options)), m_reporter(m_options.json) {}

    [[nodiscard]] const Options& options() const noexcept { return m_options; }
    [[nodiscard]] Reporter& reporter() noexcept { return m_reporter; }

    /// The provider. The first call blocks until Java is up and throws CommandError as Session does.
    [[nodiscard]] const foundation::storage::provider::IProvider& provider() {
        if (!m_session) {
            m_session.emplace(m_options);
        }
        return m_session->provider();
    }

private:
    Options m_options;
    Reporter m_reporter;
    std::optional<Session> m_session;
};

}  // namespace jstore
