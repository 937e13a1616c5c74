#include <gmock/gmock.h>

#include <sstream>

#include "ClassSearch.h"
#include "JNIUtilsClass.h"
#include "foundation/log/Severity.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {

namespace {

using foundation::log::Severity;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t only(Severity severity) { return static_cast<std::uint32_t>(severity); }

const std::string ClassLoaderArguments[] = {
    " methodName=loadClass signature=(Ljava/lang/String;)Ljava/lang/Class;",
    " methodName=getParent signature=()Ljava/lang/ClassLoader;",
};

class ClassSearchLogTest : public ClassSearchTest {
protected:
    /// The record of a question to a loader, from what the `index`-th recorded call of loadClass was given.
    std::string asking(std::size_t index, const std::string& name) {
        const JniCall call = recorder.records({.only = "CallObjectMethod loadClass"}).at(index);
        std::ostringstream text;
        text << "Asking ClassLoader (" << static_cast<const void*>(call.target) << ") to loadClass ("
             << static_cast<const void*>(call.objectArgument(0)) << ") " << name;
        return text.str();
    }

    void search(jobject loader, const std::string& name) { static_cast<void>(loadClass(guard(), loader, name)); }

    void lookUp(const std::string& name, const std::string& signature) {
        static_cast<void>(getMethodID(guard(), classNamed("java/lang/String"), name, signature));
    }
};

TEST_F(ClassSearchLogTest, LookupTellsItsArguments) {
    const LogCapture log(only(Severity::Arguments));
    lookUp("charAt", "(I)C");
    EXPECT_THAT(log.texts(), ElementsAre(" methodName=charAt signature=(I)C"));
}

TEST_F(ClassSearchLogTest, FailedLookupIsTold) {
    const LogCapture log(only(Severity::Failure));
    EXPECT_THROW(lookUp("absent", "(I)V"), std::runtime_error);
    EXPECT_THAT(log.texts(), ElementsAre("Failed to find absent with signature (I)V"));
}

TEST_F(ClassSearchLogTest, LookupThatFailsWithoutAReasonIsTold) {
    recorder.fail({.call = "GetMethodID", .failure = JniFailure::silent()});
    const LogCapture log(only(Severity::Failure));
    lookUp("length", "()I");
    EXPECT_THAT(log.texts(), ElementsAre("Failed to find length with signature ()I"));
}

TEST_F(ClassSearchLogTest, LookupThatSucceedsTellsNoFailure) {
    const LogCapture log(only(Severity::Failure));
    lookUp("length", "()I");
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(ClassSearchLogTest, SearchTellsItsArgumentsAndThoseOfItsLookups) {
    const LogCapture log(only(Severity::Arguments));
    search(nullptr, "java.util.HashMap");
    EXPECT_THAT(log.texts(),
                ElementsAre(" clsName=java.util.HashMap", ClassLoaderArguments[0], ClassLoaderArguments[1]));
}

TEST_F(ClassSearchLogTest, LoaderThatKnowsIsAskedAndNamedAsTheSource) {
    const jobject loader = loaders("known");
    const LogCapture log(only(Severity::Progress));
    search(loader, "com.example.Wanted");
    EXPECT_THAT(log.texts(),
                ElementsAre(asking(0, "com.example.Wanted"), "Loaded com.example.Wanted from ClassLoader"));
    EXPECT_EQ(recorder.record("CallObjectMethod loadClass").target, loader);
}

TEST_F(ClassSearchLogTest, WalkTellsEachStep) {
    const jobject loader = loaders("null missing");
    const LogCapture log(only(Severity::Progress));
    search(loader, "java.util.HashMap");
    static_cast<void>(takePending());
    EXPECT_THAT(log.texts(),
                ElementsAre(asking(0, "java.util.HashMap"), "loadClass returned null. Getting parent class loader",
                            asking(1, "java.util.HashMap"), "loadClass returned null. Getting parent class loader",
                            "Loaded java/util/HashMap from system class loader"));
}

TEST_F(ClassSearchLogTest, ClassThatTheSystemDoesNotKnowEndsWithoutARecord) {
    const LogCapture log(only(Severity::Progress));
    search(nullptr, "com.example.Absent");
    static_cast<void>(takePending());
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(ClassSearchLogTest, SeveritySwitchedOnAloneIsWrittenAlone) {
    for (const Severity severity : {Severity::Arguments, Severity::Progress, Severity::Caught, Severity::Enter,
                                    Severity::Exit, Severity::Failure}) {
        const jobject loader = loaders("null");
        const LogCapture log(only(severity));
        search(loader, "java.util.HashMap");
        EXPECT_THROW(lookUp("absent", "()V"), std::runtime_error);
        for (const LogRecord& record : log.records()) {
            EXPECT_EQ(record.severity, severity) << record.text;
        }
    }
}

TEST_F(ClassSearchLogTest, SearchIsToldInOrderAndIndented) {
    const jobject loader = loaders("known");
    const LogCapture log;
    search(loader, "com.example.Wanted");

    using Line = std::pair<Severity, unsigned>;
    std::vector<Line> lines;
    for (const LogRecord& record : log.records()) {
        lines.emplace_back(record.severity, record.indent);
    }
    EXPECT_THAT(lines, ElementsAre(Line{Severity::Enter, 0}, Line{Severity::Arguments, 1},  // loadClass
                                   Line{Severity::Enter, 1}, Line{Severity::Arguments, 2}, Line{Severity::Exit, 1},
                                   Line{Severity::Enter, 1}, Line{Severity::Arguments, 2}, Line{Severity::Exit, 1},
                                   Line{Severity::Progress, 1}, Line{Severity::Progress, 1}, Line{Severity::Exit, 0}));
}

TEST_F(ClassSearchLogTest, FailureIsToldBeforeTheFunctionIsLeft) {
    const LogCapture log;
    EXPECT_THROW(lookUp("absent", "()V"), std::runtime_error);
    const auto records = log.records();
    ASSERT_EQ(records.size(), 4U);
    EXPECT_EQ(records[0].severity, Severity::Enter);
    EXPECT_EQ(records[1].severity, Severity::Arguments);
    EXPECT_EQ(records[2], (LogRecord{Severity::Failure, "Failed to find absent with signature ()V", 1}));
    EXPECT_EQ(records[3].severity, Severity::Exit);
}

}  // namespace

}  // namespace storage::javaprovider::test
