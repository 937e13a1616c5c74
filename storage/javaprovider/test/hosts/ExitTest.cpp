// Hosts that end, or take things down, in ways and orders that nobody would recommend.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <latch>
#include <memory>
#include <stdexcept>
#include <thread>

#include "hosts/HostProcess.h"
#include "hosts/KeptInJava.h"

namespace storage::javaprovider::test {
namespace {

namespace fs = std::filesystem;
using foundation::storage::provider::ByteStream;
using foundation::storage::provider::IProvider;

constexpr int Code = 17;

/// What a host has alive when it ends.
struct Life {
    explicit Life(const fs::path& data)
        : jvm(startMachine()), provider(makeProvider(jvm)), stream(openNew(*provider, data, u"open")) {
        stream->write("x", 1);
        provider->startChangeNotification(at(data), [](const auto&...) {});
    }

    std::shared_ptr<storage::jvm::EmbeddedJVM> jvm;
    std::unique_ptr<IProvider> provider;
    std::unique_ptr<ByteStream> stream;
};

TEST(ExitTest, HostExitsFromAnotherThreadWhileTheFirstWorks) {
    expectSilentExit(
        [](const fs::path& data) {
            Life life(data);
            std::latch working(1);
            std::thread([&working] {
                working.wait();
                std::exit(Code);
            }).detach();
            for (;;) {
                expectWorks(*life.provider, data, u"a");
                working.count_down(working.try_wait() ? 0 : 1);
            }
        },
        Code);
}

TEST(ExitTest, HostExitsWhileAThreadWrites) {
    expectSilentExit(
        [](const fs::path& data) {
            auto* life = new Life(data);  // not destroyed: the process ends around it
            std::latch working(1);
            std::thread([&] {
                working.count_down();
                for (;;) {
                    life->stream->write("x", 1);
                }
            }).detach();
            working.wait();
            std::exit(Code);
        },
        Code);
}

TEST(ExitTest, HostExitsWhileAThreadIsKeptInJava) {
    expectSilentExit(
        [](const fs::path& data) {
            Life life(data);
            KeptInJava kept(life.jvm);
            std::exit(Code);  // destroys neither
        },
        Code);
}

/// A static object that acts when the process exits.
struct AtExit {
    ~AtExit() {
        if (action) {
            action();
        }
    }
    std::function<void()> action;
};

/// Of those functions' statics that exist, the last one made goes first.
AtExit& atExit() {
    static AtExit object;
    return object;
}

TEST(ExitTest, StaticDestructorsDestroyStreamAndProvider) {
    expectSilentExit([](const fs::path& data) {
        static std::unique_ptr<Life> life;
        life = std::make_unique<Life>(data);
    });
}

TEST(ExitTest, StaticDestructorMadeBeforeTheMachineWorksWithItsProvider) {
    expectSilentExit([](const fs::path& data) {
        AtExit& last = atExit();
        const auto life = std::make_shared<Life>(data);
        last.action = [life, data] { expectWorks(*life->provider, data, u"late"); };
    });
}

TEST(ExitTest, StaticDestructorEndsTheProcess) {
    expectSilentExit(
        [](const fs::path& data) {
            AtExit& last = atExit();
            const auto life = std::make_shared<Life>(data);
            last.action = [life] { _exit(Code); };
        },
        Code);
}

TEST(ExitTest, StaticDestructorShutsTheMachineDown) {
    expectSilentExit([](const fs::path& data) {
        AtExit& last = atExit();
        auto life = std::make_shared<Life>(data);
        last.action = [life]() mutable {
            life->stream.reset();
            life->provider.reset();
            life->jvm->shutdown();
        };
    });
}

TEST(ExitTest, StreamsOutliveTheirProvider) {
    expectSilentExit([](const fs::path& data) {
        Life life(data);
        life.provider.reset();
        // The provider's disposal closes its channels; the back end decides what the stream does then.
        try {
            life.stream->write("x", 1);
        } catch (const std::runtime_error&) {
        }
        life.stream.reset();
        expectWorks(*makeProvider(life.jvm), data, u"a");
    });
}

TEST(ExitTest, ProvidersAndStreamsOutliveTheMachine) {
    expectSilentExit([](const fs::path& data) {
        Life life(data);
        life.jvm->shutdown();
        EXPECT_THROW(static_cast<void>(life.provider->fileExists(in(data, u"a"))), std::runtime_error);
        EXPECT_THROW(life.stream->write("x", 1), std::runtime_error);
        life.provider.reset();
        life.stream.reset();
    });
}

TEST(ExitTest, NothingIsTakenDown) {
    expectSilentExit([](const fs::path& data) { [[maybe_unused]] static const Life* const life = new Life(data); });
}

}  // namespace
}  // namespace storage::javaprovider::test
