#include "events/EventTest.h"

#include <atomic>
#include <exception>
#include <latch>
#include <stdexcept>
#include <thread>
#include <vector>

#include "JavaProvider.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

std::vector<std::pair<std::string, std::string>> Event::entries() const {
    std::vector<std::pair<std::string, std::string>> found;
    for (const auto& [key, value] : details) {
        found.emplace_back(key, value.empty() ? value.data() : "(a tree)");
    }
    return found;
}

ChangeCallback EventLog::callback() {
    return [this](const Kind& kind, const StorageIRI& watched, const StorageIRI& changed, const EntryType& type,
                  boost::property_tree::ptree details) {
        const std::lock_guard lock(m_mutex);
        m_events.push_back({kind, watched, changed, type, std::move(details)});
    };
}

std::vector<Event> EventLog::events() const {
    const std::lock_guard lock(m_mutex);
    return m_events;
}

Event EventLog::only() const {
    const auto all = events();
    if (all.size() != 1) {
        throw std::logic_error(std::to_string(all.size()) + " events, not one");
    }
    return all.front();
}

void EventTest::SetUp() {
    ProviderTest::SetUp();
    tell("reset");
    provider = makePublishing();
    recorder.clear();
}

void EventTest::TearDown() {
    tell("reset");
    ProviderTest::TearDown();
}

std::unique_ptr<IProvider> EventTest::makePublishing() {
    const JniRecorder::Unrecorded unrecorded;
    jobject backEnd = newObject(env(), fixture::PublishingProvider);
    auto made = std::make_unique<JavaProvider>(handle, backEnd);
    env()->DeleteLocalRef(backEnd);
    return made;
}

int EventTest::failuresOfStartsAtOnce(int threads) {
    std::latch begin(threads);
    std::atomic<int> failed = 0;
    {
        std::vector<std::jthread> running;
        for (int i = 0; i < threads; ++i) {
            running.emplace_back([&] {
                begin.arrive_and_wait();
                try {
                    start(log.callback());
                } catch (const std::exception&) {
                    ++failed;
                }
            });
        }
    }
    return failed;
}

void EventTest::tell(const std::string& what, const std::vector<std::string>& texts) const {
    callStaticVoid(env(), fixture::Publishers, what, texts);
}

void EventTest::publish(const std::string& kind, const std::string& type) const {
    tell("publish", {kind, "java://test/watched", "java://test/changed", type, "origin"});
}

std::vector<std::string> EventTest::publishers() const {
    return callStaticStrings(env(), fixture::Publishers, "numbers");
}

}  // namespace storage::javaprovider::test
