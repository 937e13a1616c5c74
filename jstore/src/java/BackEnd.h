#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/Problem.h"
#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/ExtendedFeature.h"
#include "foundation/storage/provider/IProvider.h"
#include "options/Options.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace jstore {

/// A Java object of the chosen class and the provider over it.
///
/// Some back ends write only when they are closed, and destroying a provider reports no failure. So the object is made
/// here, where it can be closed first. Used by one thread, which stays attached to Java as long as this lives.
class BackEnd {
public:
    /// Makes both and hands the settings over. Throws CommandError "Provider" with the reason, and a usage error when
    /// the back end refuses a setting. Blocks in Java.
    BackEnd(std::shared_ptr<storage::jvm::EmbeddedJVM> jvm, const Options& options);
    /// Ends the back end and ignores failures, unless end() was called.
    ~BackEnd();

    BackEnd(const BackEnd&) = delete;
    BackEnd& operator=(const BackEnd&) = delete;

    [[nodiscard]] const foundation::storage::provider::IProvider& provider() const { return *m_provider; }

    /// Asks the back end for a feature. A back end that throws instead of answering does not have it. Blocks in Java.
    [[nodiscard]] bool hasFeature(foundation::storage::provider::ExtendedFeature feature) const;

    /// Why the last operation on this thread, the one that threw `error`, failed: in the back end's words, empty if it
    /// gives none. A second call returns nothing. Blocks in Java.
    [[nodiscard]] std::string reasonOf(const foundation::storage::provider::Exception& error) const;

    /// Closes the object if it is an AutoCloseable, then destroys the provider, which disposes of it.
    ///
    /// Returns what either of them threw: with the code and location of a ProviderException, else as "Unknown". From
    /// the close on, what Java code prints to standard error is dropped, unless there is a log. Call it once, after
    /// everything else. Blocks in Java.
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
