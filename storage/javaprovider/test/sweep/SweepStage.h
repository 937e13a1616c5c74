#pragma once

#include <jni.h>

#include <functional>
#include <memory>
#include <string>

#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/IConfigurableProvider.h"
#include "support/FakeJVM.h"

namespace storage::javaprovider::test {

/// What the operations of the sweep work on, made afresh for each of its points: a back end with an answer to
/// everything, and what an operation makes of it.
class SweepStage {
public:
    using IProvider = foundation::storage::provider::IProvider;

    /// The recorder knows nothing of the making.
    SweepStage(JNIEnv* env, const std::shared_ptr<FakeJVM>& handle);
    ~SweepStage();

    SweepStage(const SweepStage&) = delete;
    SweepStage& operator=(const SweepStage&) = delete;

    void makeProvider();
    void openStream();
    [[nodiscard]] foundation::storage::provider::IConfigurableProvider& configurable() const;

    /// The back end answers every question, and forgets what it was to throw.
    void answerEverything() const;
    /// The next call of the back end's method throws; `kind` as the fixtures' Failures takes it.
    void failNext(const std::string& method, const std::string& kind) const;
    /// The back end lets its publishers go, and waits until the machine has collected them.
    void collectPublishers() const;
    /// The calls that the back end and its channels received while the action ran: methods and arguments.
    [[nodiscard]] std::string told(const std::function<void()>& action) const;
    /// Whether the last request to start gave the back end a publisher.
    [[nodiscard]] bool gavePublisher() const;
    /// Strings that nativePublish gets.
    [[nodiscard]] jstring text(const char16_t* units) const;

    JNIEnv* env;
    std::shared_ptr<FakeJVM> handle;
    jobject backEnd = nullptr;
    std::shared_ptr<IProvider> provider = nullptr;
    std::unique_ptr<foundation::storage::provider::ByteStream> stream = nullptr;
};

}  // namespace storage::javaprovider::test
