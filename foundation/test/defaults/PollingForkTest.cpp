// A child process destroys a provider that the parent polls.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "PollingTest.h"

namespace foundation::test {
namespace {

class PollingForkTest : public PollingTest {
protected:
    static int forks() {
        const char* const wanted = std::getenv("POLLING_FORKS");
        return wanted == nullptr ? 200 : std::atoi(wanted);
    }

    /// Runs the action in a child. Whether the child came to its end in time.
    static bool endsInAChild(const std::function<void()>& action) {
        const pid_t pid = fork();
        if (pid == 0) {
            alarm(20);  // a child that waits for a thread of the parent, or for its lock, would never end
            action();
            _exit(0);
        }
        int status = -1;
        return waitpid(pid, &status, 0) == pid && status == 0;
    }
};

TEST_F(PollingForkTest, ChildMayDestroyAProviderWhateverOtherThreadsDoMeanwhile) {
    auto never = std::make_unique<InMemoryProvider>();
    auto once = std::make_unique<InMemoryProvider>();
    once->createFolder(m_folder);
    once->startChangePollingMechanism(m_folder, m_trail.callback(), Never);
    once->stopChangePollingMechanism(m_folder);
    std::vector<std::jthread> others;
    for (const StorageIRI& location : {m_folder, m_folder.getParent()}) {
        others.emplace_back([this, location](const std::stop_token& done) {
            while (!done.stop_requested()) {
                start(
                    location, [](auto&&...) {}, Never);
                stop(location);
            }
        });
    }
    for (int child = 0; child < forks(); ++child) {
        ASSERT_TRUE(endsInAChild([&] {
            never.reset();
            once.reset();
        })) << "child "
            << child;
    }
}

TEST_F(PollingForkTest, ForkedChildMayDestroyTheProvider) {
    auto provider = std::make_unique<InMemoryProvider>();
    provider->createFolder(m_folder);
    provider->startChangePollingMechanism(m_folder, m_trail.callback(), Never);
    EXPECT_TRUE(endsInAChild([&] {
        provider->stopChangePollingMechanism(m_folder);
        provider.reset();
    }));
    provider->stopChangePollingMechanism(m_folder);
}

}  // namespace
}  // namespace foundation::test
