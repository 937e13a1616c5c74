#pragma once

#include <jni.h>

#include <boost/property_tree/ptree.hpp>

#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "data/CallLines.h"
#include "foundation/storage/provider/ChangeCallback.h"
#include "provider/ProviderTest.h"

namespace storage::javaprovider::test {

/// Java objects of the tests of events, by the names JNI knows them by.
namespace fixture {
inline constexpr const char* Publishers = "com/corvallen/storage/test/data/Publishers";
inline constexpr const char* PublishingProvider = "com/corvallen/storage/test/data/PublishingProvider";
inline constexpr const char* NativePublisher = "com/corvallen/storage/provider/NativePublisher";
/// Makes the reference that a request leaves to its frame when it fails.
inline constexpr const char* MakingOfUri = "NewObject com/corvallen/storage/provider/StorageURI";
}  // namespace fixture

using foundation::storage::events::Kind;
using foundation::storage::provider::ChangeCallback;
using foundation::storage::provider::EntryType;

/// One event as a callback gets it.
struct Event {
    Kind kind{};
    StorageIRI watched;
    StorageIRI changed;
    EntryType type{};
    boost::property_tree::ptree details;

    /// The details as key and value, in order; children of a value are left out.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> entries() const;
};

/// The events that callbacks got. Safe from any thread.
class EventLog {
public:
    /// A callback that adds to this log, which must outlive it.
    [[nodiscard]] ChangeCallback callback();
    [[nodiscard]] std::vector<Event> events() const;
    [[nodiscard]] std::size_t size() const { return events().size(); }
    /// The only event; std::logic_error when there are none or several.
    [[nodiscard]] Event only() const;

private:
    mutable std::mutex m_mutex;
    std::vector<Event> m_events;
};

/// A test of a provider whose back end publishes events and shows its publishers.
class EventTest : public ProviderTest {
protected:
    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] std::unique_ptr<IProvider> makePublishing();

    /// Starts change notification on java://test/a.
    void start(const ChangeCallback& callback) const { provider->startChangeNotification(location, callback); }
    /// Starts it from that many threads at the same time, with the log's callback. Returns how many requests threw.
    [[nodiscard]] int failuresOfStartsAtOnce(int threads);
    /// Calls a method of the Java class Publishers.
    void tell(const std::string& what, const std::vector<std::string>& texts = {}) const;
    /// The Java side publishes one event through the publisher that it was handed last, on this thread.
    void publish(const std::string& kind = "SelfModified", const std::string& type = "File") const;
    /// For each start request the number of its publisher in order of appearance.
    [[nodiscard]] std::vector<std::string> publishers() const;

    const StorageIRI location{u"java://test/a"};
    EventLog log;
    std::unique_ptr<IProvider> provider;
};

}  // namespace storage::javaprovider::test
