#include "java/LogSink.h"

#include <gtest/gtest.h>
#include <boost/log/core.hpp>

#include <iostream>
#include <stdexcept>
#include <streambuf>

#include "foundation/log/Severity.h"
#include "foundation/log/basic_diagnostic_logger.h"

namespace jstore {

namespace {

/// Takes nothing, and says so by an exception.
class RefusingBuffer final : public std::streambuf {
protected:
    int_type overflow(int_type /*c*/) override { throw std::runtime_error("refused"); }
    std::streamsize xsputn(const char* /*text*/, std::streamsize /*size*/) override {
        throw std::runtime_error("refused");
    }
};

/// Standard error that throws, until the end of the scope.
class RefusingError {
public:
    RefusingError() : m_before(std::cerr.rdbuf(&m_buffer)) { std::cerr.exceptions(std::ios::badbit); }
    ~RefusingError() {
        std::cerr.exceptions(std::ios::goodbit);
        std::cerr.clear();
        std::cerr.rdbuf(m_before);
        boost::log::core::get()->remove_all_sinks();
    }
    RefusingError(const RefusingError&) = delete;
    RefusingError& operator=(const RefusingError&) = delete;

private:
    RefusingBuffer m_buffer;
    std::streambuf* m_before;
};

TEST(LogSinkTest, RecordThatCannotBeWrittenHarmsNothing) {
    using foundation::log::Severity;
    startLog(LogLevel::Trace);
    const RefusingError refusing;
    foundation::log::basic_diagnostic_logger<char> logger("storage::javaprovider");
    EXPECT_NO_THROW(FOUNDATION_LOG(logger, Severity::Progress) << "a record");
}

}  // namespace

}  // namespace jstore
