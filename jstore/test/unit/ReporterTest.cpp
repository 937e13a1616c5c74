#include "output/Reporter.h"

#include <gtest/gtest.h>

namespace jstore {

using foundation::storage::provider::StorageIRI;

namespace {

class ReporterTest : public ::testing::Test {
protected:
    ReporterTest() {
        m_plain.setVerb("mkdir");
        m_json.setVerb("mkdir");
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
    }

    void expect(const std::string& out, const std::string& err) {
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), out);
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), err);
    }

    Location m_location{StorageIRI(u"java:///\u00FC \"q\"")};
    Problem m_problem{"NotFound", m_location.text(), "", ExitCode::NotFound};
    Reporter m_plain{/*json=*/false};
    Reporter m_json{/*json=*/true};
};

TEST_F(ReporterTest, SuccessIsSilent) {
    m_plain.done(m_location);
    expect("", "");
}

TEST_F(ReporterTest, FailureIsALineOnStandardError) {
    m_plain.failed(m_location, m_problem);
    expect("", "jstore: NotFound: java:///\xC3\xBC \"q\"\n");
}

TEST_F(ReporterTest, LineIsForPeople) {
    m_plain.line("file");
    m_json.line("file");
    expect("file\n", "");
}

TEST_F(ReporterTest, SuccessIsAnObjectWithJson) {
    m_json.done(m_location, {{"type", "file"}});
    expect(R"({"verb":"mkdir","location":"java:///ü \"q\"","type":"file","ok":true})"
           "\n",
           "");
}

TEST_F(ReporterTest, FailureIsAnObjectAndALineWithJson) {
    m_json.failed(m_location, m_problem);
    expect(R"({"verb":"mkdir","location":"java:///ü \"q\"","ok":false,)"
           R"("error":{"code":"NotFound","message":"nothing is there"}})"
           "\n",
           "jstore: NotFound: java:///\xC3\xBC \"q\"\n");
}

TEST_F(ReporterTest, ErrorAtAnotherLocationNamesIt) {
    m_json.failed(m_location, {"AlreadyExists", "java:///b", "kept", ExitCode::AlreadyExists});
    expect(R"({"verb":"mkdir","location":"java:///ü \"q\"","ok":false,)"
           R"("error":{"code":"AlreadyExists","message":"kept","location":"java:///b"}})"
           "\n",
           "jstore: AlreadyExists: java:///b: kept\n");
}

TEST_F(ReporterTest, FailureOfTheCommandHasNoLocation) {
    m_json.failed({"NoJava", "", "no Java found", ExitCode::NoJava});
    expect(R"({"verb":"mkdir","ok":false,"error":{"code":"NoJava","message":"no Java found"}})"
           "\n",
           "jstore: no Java found\n");
}

TEST_F(ReporterTest, DeniedHasNoErrorLine) {
    m_plain.denied(m_location, m_problem);
    m_json.denied(m_location, m_problem);
    expect(R"({"verb":"mkdir","location":"java:///ü \"q\"","ok":false,)"
           R"("error":{"code":"NotFound","message":"nothing is there"}})"
           "\n",
           "");
}

}  // namespace

}  // namespace jstore
