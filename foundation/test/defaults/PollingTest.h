#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "../shared/EventTrail.h"
#include "Eventually.h"
#include "ExpectError.h"
#include "InMemoryProvider.h"

namespace foundation::test {

/// A back end in memory whose folder can be polled. What the polling thread asks can be made to fail or wait; the
/// test's own operations are not disturbed.
class PollingTest : public testing::Test {
protected:
    using EntryType = storage::provider::EntryType;
    using ErrorCode = storage::provider::ErrorCode;
    using Exception = storage::provider::Exception;
    using Kind = storage::events::Kind;
    using Lines = std::vector<std::string>;
    using StorageIRI = storage::provider::StorageIRI;
    using ChangeCallback = storage::provider::ChangeCallback;

    static constexpr std::chrono::milliseconds Often{1};
    static constexpr std::chrono::milliseconds Never = std::chrono::hours(1);

    void SetUp() override {
        m_provider.setHook([this](std::string_view operation, const StorageIRI& at) { meet(operation, at); });
        m_provider.createFolder(m_folder);
    }

    void TearDown() override {
        disturb({});
        m_provider.stopChangePollingMechanism(m_folder);
        m_provider.stopChangePollingMechanism(m_file);
    }

    void start(const StorageIRI& location, const ChangeCallback& callback, std::chrono::milliseconds interval = Often) {
        m_provider.startChangePollingMechanism(location, callback, interval);
    }
    void start() { start(m_folder, m_trail.callback()); }
    void stop(const StorageIRI& location) { m_provider.stopChangePollingMechanism(location); }

    [[nodiscard]] StorageIRI child(std::u16string_view name) const { return m_folder.getChild(name); }

    void write(const StorageIRI& file, std::string_view bytes) const {
        const auto stream = m_provider.openByteStream(file);
        (void)stream->write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        stream->close();
    }

    /// From now on the polling thread comes by here at the start of each operation; it may throw.
    void disturb(InMemoryProvider::Hook hook) {
        const std::lock_guard lock(m_mutex);
        m_disturbance = std::move(hook);
    }
    /// Makes an operation of the polling thread fail.
    void fail(std::string_view operation, const StorageIRI& location, ErrorCode code) {
        disturb([=](std::string_view met, const StorageIRI& at) {
            if (met == operation && at == location) {
                throw Exception(code, at);
            }
        });
    }

    /// Waits until a whole look has begun and ended.
    void awaitLook() {
        const int before = m_looks;
        EXPECT_TRUE(eventually([&] { return m_looks >= before + 2; }));
    }

    /// Lets the polling thread see nothing of the change until it is complete.
    void atOnce(const std::function<void()>& change) {
        fail("fileExists", m_folder, ErrorCode::Unavailable);
        awaitLook();
        change();
        disturb({});
    }

    /// Expects that the next scans report nothing.
    void expectSilence() {
        awaitLook();
        EXPECT_EQ(m_trail.rest(), Lines());
    }
    /// Expects that the change is not reported; another location is polled in the meantime, so that there are scans.
    void expectUnreported(const std::function<void()>& change) {
        const StorageIRI other = m_file.getParent();
        start(other, [](auto&&...) {});
        change();
        expectSilence();
        stop(other);
    }

    const StorageIRI m_folder{u"java://mount/folder"};
    const StorageIRI m_file{u"java://mount/file"};
    EventTrail m_trail;
    std::atomic<int> m_looks = 0;

private:
    void meet(std::string_view operation, const StorageIRI& at) {
        if (std::this_thread::get_id() == m_testThread) {
            return;
        }
        InMemoryProvider::Hook disturbance;
        {
            const std::lock_guard lock(m_mutex);
            disturbance = m_disturbance;
        }
        m_looks += operation == "fileExists" ? 1 : 0;
        if (disturbance) {
            disturbance(operation, at);
        }
    }

    const std::thread::id m_testThread = std::this_thread::get_id();
    std::mutex m_mutex;
    InMemoryProvider::Hook m_disturbance;

protected:
    InMemoryProvider m_provider;  // goes first
};

}  // namespace foundation::test
