#include "DefaultsTest.h"

#include <exception>

namespace foundation::test {

using namespace storage::provider;

namespace {

/// Whether the operation threw.
bool throws(const std::function<void(FaultyProvider&)>& operation, FaultyProvider& provider) {
    try {
        operation(provider);
        return false;
    } catch (const std::exception&) {
        return true;
    }
}

}  // namespace

void DefaultsTest::SetUp() { m_provider.createFolder(m_folder); }

void DefaultsTest::TearDown() { EXPECT_EQ(m_provider.habits().open, 0) << "streams are left open"; }

void DefaultsTest::write(const IProvider& provider, const StorageIRI& location, std::string_view bytes) {
    const auto stream = provider.openByteStream(location, {.creation = ByteStreamOpenOptions::Creation::CreateIfMissing,
                                                           .content = ByteStreamOpenOptions::Content::Truncate});
    ASSERT_EQ(stream->write(bytes.data(), static_cast<std::streamsize>(bytes.size())),
              static_cast<std::streamsize>(bytes.size()));
    stream->close();
}

std::vector<std::u16string> DefaultsTest::namesIn(const IProvider& provider) const {
    std::vector<std::u16string> names;
    for (const auto entries = provider.listAll(m_folder); entries->hasMore();) {
        entries->advance();
        names.push_back(entries->getCurrent().name());
    }
    return names;
}

std::vector<StorageIRI> DefaultsTest::createdBy(const std::function<void()>& action) {
    std::vector<StorageIRI> created;
    m_provider.setHook([&created](std::string_view operation, const StorageIRI& location) {
        if (operation == "createFile") {
            created.push_back(location);
        }
    });
    action();
    m_provider.setHook({});
    return created;
}

int DefaultsTest::forEachFault(FaultPlan::Mode mode, const FaultRun& run) {
    for (int n = 1;; ++n) {
        SCOPED_TRACE("failure of operation " + std::to_string(n) + " in mode " +
                     std::to_string(static_cast<int>(mode)));
        FaultyProvider provider;
        run.prepare(provider);
        provider.plan().failAt(n, mode);
        const bool threw = throws(run.operation, provider);
        const bool met = provider.plan().met();
        const std::string failed = met ? provider.plan().operations()[static_cast<std::size_t>(n) - 1] : "none";
        SCOPED_TRACE(failed);
        provider.plan().failAt(0, mode);
        run.check(provider, threw);
        EXPECT_EQ(provider.habits().open, 0);
        if (!met) {
            EXPECT_FALSE(threw);
            return n - 1;
        }
    }
}

}  // namespace foundation::test
