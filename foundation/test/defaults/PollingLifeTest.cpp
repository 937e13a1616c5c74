// Starting again, the polling thread, and the end of a provider that is polled.
#include <filesystem>
#include <latch>
#include <memory>
#include <random>

#include "PollingTest.h"

namespace foundation::test {
namespace {

std::ptrdiff_t threads() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), std::filesystem::directory_iterator());
}

class PollingLifeTest : public PollingTest {
protected:
    /// ThreadSanitizer starts a thread of its own with the program's first, which is not to be counted.
    static void SetUpTestSuite() {
        std::thread([] {}).join();
    }
};

TEST_F(PollingLifeTest, PollingCanBeStartedAgainAfterTheStop) {
    for (const char16_t* name : {u"a", u"b", u"c"}) {
        start();
        m_provider.createFile(child(name));
        EXPECT_EQ(m_trail.next(1).size(), 1U);
        stop(m_folder);
    }
}

TEST_F(PollingLifeTest, LookAtManyChildrenIsGivenUpAtTheStop) {
    for (char16_t name = u'a'; name <= u'z'; ++name) {
        m_provider.createFile(child(std::u16string(1, name)));
    }
    const auto before = threads();
    std::atomic<int> asked = 0;
    start();
    disturb([&](std::string_view operation, const StorageIRI&) {
        if (operation == "getFileAttributes") {
            ++asked;
            stop(m_folder);
        }
    });
    EXPECT_TRUE(eventually([&] { return threads() == before; }));
    EXPECT_EQ(asked, 1);
}

TEST_F(PollingLifeTest, SecondStartTakesThePlaceOfTheFirst) {
    const auto token = std::make_shared<int>();
    start(
        m_folder, [token](auto&&...) { ADD_FAILURE() << "the replaced callback is called"; }, Never);
    m_provider.createFile(child(u"a"));
    start(StorageIRI(u"java://mount/folder/"), m_trail.callback());
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File a"}) << "what changed in between is not missed";
    m_provider.createFile(child(u"b"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File b"});
    stop(m_folder);
    expectUnreported([&] { m_provider.createFile(child(u"c")); });
}

TEST_F(PollingLifeTest, LocationsHaveTheirOwnIntervalsAndOneThread) {
    m_provider.createFile(m_file);
    std::mutex mutex;
    std::set<std::thread::id> seen;
    std::atomic<int> calls = 0;
    const ChangeCallback callback = [&](auto&&...) {
        const std::lock_guard lock(mutex);
        seen.insert(std::this_thread::get_id());
        ++calls;
    };
    start(m_folder, callback);
    start(m_file, callback);
    start(
        m_file.getParent(), [](auto&&...) { ADD_FAILURE() << "it is not its turn"; }, Never);
    m_provider.createFile(child(u"a"));
    write(m_file, "bytes");
    EXPECT_TRUE(eventually([&] { return calls == 2; }));
    stop(m_file.getParent());
    EXPECT_EQ(seen.size(), 1U);
    EXPECT_FALSE(seen.contains(std::this_thread::get_id()));
    stop(m_file);
    stop(m_folder);
}

TEST_F(PollingLifeTest, ThreadEndsWithTheLastLocation) {
    const auto before = threads();
    start();
    start(m_file.getParent(), [](auto&&...) {});
    EXPECT_EQ(threads(), before + 1);
    stop(m_folder);
    EXPECT_EQ(threads(), before + 1);
    stop(m_file.getParent());
    EXPECT_TRUE(eventually([&] { return threads() == before; }));
}

TEST_F(PollingLifeTest, ProviderThatIsDestroyedEndsWhatIsLeft) {
    const auto before = threads();
    const auto token = std::make_shared<int>();
    auto provider = std::make_unique<InMemoryProvider>();
    provider->createFolder(m_folder);
    provider->startChangePollingMechanism(
        m_folder, [token](auto&&...) {}, Never);
    provider.reset();
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_TRUE(eventually([&] { return threads() == before; }));
}

TEST_F(PollingLifeTest, CallbackMayDestroyTheProvider) {
    const auto before = threads();
    const auto token = std::make_shared<int>();
    auto provider = std::make_unique<InMemoryProvider>();
    provider->createFolder(m_folder);
    provider->createFile(child(u"a"));
    provider->createFile(child(u"b"));
    std::atomic<int> calls = 0;
    std::latch removed(1);
    provider->startChangePollingMechanism(
        m_folder,
        [&, token](auto&&...) {
            removed.wait();  // no operation may be under way
            provider.reset();
            ++calls;
        },
        Often);
    provider->removeFolderRecursive(m_folder);
    removed.count_down();
    EXPECT_TRUE(eventually([&] { return threads() == before; }));
    EXPECT_TRUE(eventually([&] { return token.use_count() == 1; }));
    EXPECT_EQ(calls, 1);
}

TEST_F(PollingLifeTest, ManyThreadsStartAndStopAtOnce) {
    constexpr int Threads = 8;
    std::vector<std::jthread> workers;
    std::atomic<int> late = 0;
    for (int worker = 0; worker < Threads; ++worker) {
        workers.emplace_back([&, worker] {
            std::minstd_rand random(static_cast<unsigned>(worker) + 1);
            const StorageIRI own = child(std::u16string(1, static_cast<char16_t>(u'a' + worker)));
            m_provider.createFolder(own);
            for (int round = 0; round < 50; ++round) {
                const auto alive = std::make_shared<std::atomic<bool>>(true);
                start(own, [&, alive](auto&&...) { late += *alive ? 0 : 1; });
                start(m_folder, [](auto&&...) {});
                m_provider.createFile(own.getChild(u"f"));
                if (random() % 2 == 0) {
                    stop(m_folder);
                }
                stop(own);
                *alive = false;
                m_provider.removeFile(own.getChild(u"f"));
            }
        });
    }
    workers.clear();
    EXPECT_EQ(late, 0);
}

}  // namespace
}  // namespace foundation::test
