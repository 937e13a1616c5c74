#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/Problem.h"
#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/IProvider.h"
#include "options/Options.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace jstore {

/// A Java object of the chosen class and the provider over it.
///
/// The object is made here and not by the provider, so that it can be closed in a way that tells: a provider's end
/// reports nothing, and some back ends write at the end only. Used by one thread, which stays attached meanwhile.
class BackEnd {
public:
    /// Makes both and hands the settings over. Throws CommandError "Provider" with the reason, and a usage error when
    /// the back end refuses a setting. Blocks in Java.
    BackEnd(std::shared_ptr<storage::jvm::EmbeddedJVM> jvm, const Options& options);
    /// Ends without telling, unless end() was called.
    ~BackEnd();

    BackEnd(const BackEnd&) = delete;
    BackEnd& operator=(const BackEnd&) = delete;

    [[nodiscard]] const foundation::storage::provider::IProvider& provider() const { return *m_provider; }

    /// Why the operation that threw `error` on this thread just now failed, in the back end's words; empty when it does
    /// not say. To be asked once. Blocks in Java.
    [[nodiscard]] std::string reasonOf(const foundation::storage::provider::Exception& error) const;

    /// Closes the object if it is an AutoCloseable, then gives the provider back, which disposes of it. What fails, or
    /// what a disposal throws though it must not, is the answer: the code and location of a ProviderException,
    /// "Unknown" for anything else. What Java code prints meanwhile is dropped unless there is a log. To be called
    /// once, after everything else. Blocks in Java.
    [[nodiscard]] std::optional<Problem> end();

private:
    void release();
    [[nodiscard]] std::optional<Problem> closeObject();

    std::shared_ptr<storage::jvm::EmbeddedJVM> m_jvm;
    bool m_quiet;
    jobject m_object = nullptr;
    std::unique_ptr<foundation::storage::provider::IProvider> m_provider;
};

}  // namespace jstore
