// What goes no further than the polling thread is in the log.
#include <boost/log/core.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_ostream_backend.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <sstream>
#include <stdexcept>

#include "PollingTest.h"
#include "foundation/log/Severity.h"
#include "foundation/log/SeverityMask.h"

namespace foundation::test {
namespace {

class PollingLogTest : public PollingTest {
protected:
    using Backend = boost::log::sinks::text_ostream_backend;
    using Sink = boost::log::sinks::synchronous_sink<Backend>;

    void SetUp() override {
        PollingTest::SetUp();
        m_sink->locked_backend()->add_stream(m_lines);
        m_sink->locked_backend()->auto_flush(true);
        boost::log::core::get()->add_sink(m_sink);
        log::setSeverityMask("foundation::storage", log::AllSeverities);
    }

    void TearDown() override {
        PollingTest::TearDown();
        log::setSeverityMask("foundation::storage", 0);
        boost::log::core::get()->remove_sink(m_sink);
    }

    [[nodiscard]] std::string logged() {
        const auto backend = m_sink->locked_backend();
        return m_lines->str();
    }

    static int countOf(const std::string& text, const std::string& part) {
        int count = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
            ++count;
        }
        return count;
    }

    boost::shared_ptr<Sink> m_sink = boost::make_shared<Sink>(boost::make_shared<Backend>());
    boost::shared_ptr<std::ostringstream> m_lines = boost::make_shared<std::ostringstream>();
};

TEST_F(PollingLogTest, RowOfFailedLooksIsLoggedOnce) {
    start();
    for (int row = 1; row <= 2; ++row) {
        fail("listAll", m_folder, ErrorCode::AccessDenied);
        awaitLook();
        awaitLook();
        EXPECT_EQ(countOf(logged(), "Cannot look for changes of java://mount/folder"), row) << logged();
        disturb({});
        awaitLook();
    }
    EXPECT_EQ(countOf(logged(), "AccessDenied"), 2) << logged();
}

TEST_F(PollingLogTest, ExceptionOfACallbackIsLogged) {
    start(m_folder, [](auto&&...) { throw std::runtime_error("not allowed"); });
    m_provider.createFile(child(u"a"));
    EXPECT_TRUE(eventually([&] { return countOf(logged(), "not allowed") == 1; })) << logged();
    EXPECT_EQ(countOf(logged(), "A callback threw at a change of java://mount/folder"), 1) << logged();
}

TEST_F(PollingLogTest, ProviderThatIsDestroyedWhileItIsPolledIsLogged) {
    {
        InMemoryProvider provider;
        provider.createFolder(m_folder);
        provider.startChangePollingMechanism(m_folder, m_trail.callback(), Never);
        provider.startChangePollingMechanism(m_folder.getParent(), m_trail.callback(), Never);
    }
    EXPECT_EQ(countOf(logged(), "destroyed while it was polled for changes of 2 locations"), 1) << logged();
}

TEST_F(PollingLogTest, OrderlyEndIsNotLogged) {
    {
        InMemoryProvider provider;
        provider.createFolder(m_folder);
        provider.startChangePollingMechanism(m_folder, m_trail.callback(), Often);
        provider.stopChangePollingMechanism(m_folder);
    }
    EXPECT_EQ(logged(), "");
}

}  // namespace
}  // namespace foundation::test
