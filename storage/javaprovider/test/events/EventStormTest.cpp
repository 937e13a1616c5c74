// Events by the million, from many Java threads at once, and the end of a provider in their midst. STORM_EVENTS says
// how many.
#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <memory>
#include <string>

#include "JavaProvider.h"
#include "events/EventTest.h"
#include "fl/i18n/text.h"
#include "support/Eventually.h"
#include "support/JavaHelpers.h"
#include "support/JvmTest.h"
#include "support/NumberFromEnvironment.h"

namespace storage::javaprovider::test {
namespace {

constexpr int Threads = 8;

/// Checks numbered events: each thread's come in order, whole, and one at a time.
class NumberedEvents {
public:
    void take(const Kind& kind, const StorageIRI& watched, const StorageIRI& changed, const EntryType& type,
              const boost::property_tree::ptree& details) {
        const std::string tag = details.get<std::string>("originId");
        const auto slash = tag.find('/');
        const int thread = std::stoi(tag.substr(0, slash));
        const int number = std::stoi(tag.substr(slash + 1));
        const bool isNext = m_next.at(static_cast<std::size_t>(thread)).fetch_add(1) == number;
        if (!isNext || !isWhole(kind, watched, changed, type, tag, number)) {
            ++m_wrong;
        }
        ++m_taken;
    }

    [[nodiscard]] int wrong() const { return m_wrong; }
    [[nodiscard]] int taken() const { return m_taken; }

private:
    [[nodiscard]] static bool isWhole(const Kind& kind, const StorageIRI& watched, const StorageIRI& changed,
                                      const EntryType& type, const std::string& tag, int number) {
        // In the order of Java's constants.
        static constexpr std::array Kinds = {Kind::ChildAdded, Kind::ChildModified, Kind::ChildRemoved,
                                             Kind::SelfModified, Kind::SelfRemoved};
        const std::u16string text = fl::i18n::to_ustring(tag);
        return kind == Kinds.at(static_cast<std::size_t>(number) % Kinds.size()) &&
               watched.text() == u"java://watched/" + text && changed.text() == u"java://changed/" + text &&
               type == (number % 2 == 0 ? EntryType::File : EntryType::Folder);
    }

    std::array<std::atomic<int>, Threads> m_next{};
    std::atomic<int> m_wrong = 0;
    std::atomic<int> m_taken = 0;
};

/// Without a recorder, which would be the slowest part.
class EventStormTest : public JvmTest {
protected:
    void SetUp() override {
        JvmTest::SetUp();
        script::reset(env());
        tell("reset");
    }
    void TearDown() override {
        tell("endStorm");
        tell("reset");
        script::reset(env());
        JvmTest::TearDown();
    }

    void tell(const std::string& what, const std::vector<std::string>& texts = {}) const {
        callStaticVoid(env(), fixture::Publishers, what, texts);
    }
    [[nodiscard]] int attempts() const { return callStaticInt(env(), fixture::Publishers, "attempts"); }

    /// A provider that watches and sends its events to the callback.
    [[nodiscard]] std::unique_ptr<IProvider> makeWatching(const ChangeCallback& callback) const {
        jobject backEnd = newObject(env(), fixture::PublishingProvider);
        std::unique_ptr<IProvider> provider = std::make_unique<JavaProvider>(jvm(), backEnd);
        env()->DeleteLocalRef(backEnd);
        provider->startChangeNotification(StorageIRI(u"java://test/a"), callback);
        return provider;
    }
};

TEST_F(EventStormTest, MillionEventsOfEightThreadsAllArriveWhole) {
    const int each = static_cast<int>(numberFromEnvironment("STORM_EVENTS", 1'000'000)) / Threads;
    ASSERT_GT(each, 0);
    NumberedEvents events;
    const auto provider = makeWatching([&](auto&&... event) { events.take(event...); });
    tell("publishMany", {std::to_string(Threads), std::to_string(each)});
    EXPECT_EQ(events.taken(), Threads * each);
    EXPECT_EQ(events.wrong(), 0);
}

TEST_F(EventStormTest, DisposalUnderFireEndsTheEvents) {
    for (int round = 0; round < 10; ++round) {
        tell("reset");
        const auto taken = std::make_shared<std::atomic<int>>(0);
        const auto destroyed = std::make_shared<std::atomic<bool>>(false);
        const auto late = std::make_shared<std::atomic<int>>(0);
        auto provider = makeWatching([taken, destroyed, late](auto&&...) {
            ++*taken;
            *late += *destroyed ? 1 : 0;
        });
        tell("startStorm", {std::to_string(Threads)});
        ASSERT_TRUE(eventually([&] { return *taken > 1000; }, std::chrono::seconds(60)));
        provider.reset();
        *destroyed = true;
        EXPECT_EQ(taken.use_count(), 1) << "the callback is gone";
        const int attemptsThen = attempts();
        ASSERT_TRUE(eventually([&] { return attempts() > attemptsThen + 5000; }, std::chrono::seconds(60)))
            << "the threads go on publishing";
        EXPECT_EQ(*late, 0);
        tell("endStorm");
    }
}

}  // namespace
}  // namespace storage::javaprovider::test
