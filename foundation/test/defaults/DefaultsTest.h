#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ExpectError.h"
#include "FaultyProvider.h"

namespace foundation::test {

/// A folder in a back end that may fail. After each test no stream is left open.
class DefaultsTest : public testing::Test {
protected:
    using ErrorCode = storage::provider::ErrorCode;
    using Exception = storage::provider::Exception;
    using Policy = storage::provider::ReplacementPolicy;
    using StorageIRI = storage::provider::StorageIRI;

    static constexpr FaultPlan::Mode AllModes[] = {FaultPlan::Mode::Once, FaultPlan::Mode::Lasting,
                                                   FaultPlan::Mode::AfterEffect, FaultPlan::Mode::Foreign};

    void SetUp() override;
    void TearDown() override;

    static void write(const storage::provider::IProvider& provider, const StorageIRI& location, std::string_view bytes);
    void write(const StorageIRI& location, std::string_view bytes) const { write(m_provider, location, bytes); }
    [[nodiscard]] std::string bytesOf(const StorageIRI& location) const { return m_provider.bytesOf(location); }

    /// The names in the folder of the test.
    [[nodiscard]] std::vector<std::u16string> names() const { return namesIn(m_provider); }
    [[nodiscard]] std::vector<std::u16string> namesIn(const storage::provider::IProvider& provider) const;

    /// The locations where files are created while `action` runs.
    std::vector<StorageIRI> createdBy(const std::function<void()>& action);

    /// Runs `operation` on a new provider that `prepare` has filled, with its first operation failing, then its second,
    /// and so on until nothing fails any more. `check` judges each outcome and learns whether the operation threw.
    /// Returns the number of failures.
    struct FaultRun {
        std::function<void(FaultyProvider&)> prepare;
        std::function<void(FaultyProvider&)> operation;
        std::function<void(FaultyProvider&, bool threw)> check;
    };
    static int forEachFault(FaultPlan::Mode mode, const FaultRun& run);

    const StorageIRI m_folder{u"java://mount/folder"};
    const StorageIRI m_source{u"java://mount/folder/source"};
    const StorageIRI m_target{u"java://mount/folder/target"};
    FaultyProvider m_provider;
};

}  // namespace foundation::test
