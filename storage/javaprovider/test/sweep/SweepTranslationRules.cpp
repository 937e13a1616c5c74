// What the back end threw is being translated.
#include "sweep/SweepRuleParts.h"

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Way;
using enum SweepRule::Before;
using Rules = std::vector<SweepRule>;

/// What the back end throws in an operation.
struct Thrown {
    const char* operation;
    std::string className;
    std::string message;

    [[nodiscard]] std::string toString() const { return className + ": " + message; }
    [[nodiscard]] std::string report(const std::string& name, const std::string& text) const {
        return "ProviderCallback threw an unexpected " + name + ". The message was: " + text;
    }
    [[nodiscard]] std::string report() const { return report(className, message); }
};

const Thrown OwnError = {"end in an error of the back end's own class",
                         "com.corvallen.storage.test.Failures$OwnProviderException", "a subclass"};
const Thrown PlainError = {"end in a back end's error", "com.corvallen.storage.provider.ProviderException",
                           "IN_USE: java://test/a"};
const Thrown BugOfStream = {"end in a bug, of a stream", "java.io.IOException", "java://test/a"};
const Thrown Bug = {"end in a bug", "java.lang.IllegalStateException", "java://test/a"};

SweepRule ends(const Thrown& thrown, const std::string& call, const std::string& text) {
    return {
        .operation = thrown.operation, .call = call, .before = Pending, .ending = Ending::InternalError, .text = text};
}

/// A look-up fails while the exception is pending, which is then what explains it.
SweepRule explained(const Thrown& thrown, const std::string& call, std::size_t repetition, const std::string& method) {
    return {.operation = thrown.operation,
            .call = call,
            .way = Silently,
            .before = Pending,
            .repetition = repetition,
            .ending = Ending::InternalError,
            .text = method + thrown.toString()};
}

Rules lookUps(const Thrown& thrown) {
    return {
        explained(thrown, "GetMethodID", 0, MethodNotFound),
        explained(thrown, "FindClass java/lang/Class", 0,
                  "Method getClassLoader with signature ()Ljava/lang/ClassLoader; not found.\n"),
        explained(thrown, "FindClass java/lang/ClassLoader", 1,
                  "Method loadClass with signature (Ljava/lang/String;)Ljava/lang/Class; not found.\n"),
        explained(thrown, "FindClass java/lang/ClassLoader", 2,
                  "Method getParent with signature ()Ljava/lang/ClassLoader; not found.\n"),
    };
}

/// Not known to be the back end's, an error is a bug like any other.
Rules errors(const Thrown& thrown) {
    const auto providerError = [&thrown](const char* call, const char* text) {
        return SweepRule{.operation = thrown.operation,
                         .call = call,
                         .before = Pending,
                         .ending = Ending::ProviderError,
                         .text = text};
    };
    return joined({lookUps(thrown),
                   {providerError("CallObjectMethod getLocationString", "11 "),
                    providerError("CallIntMethod getErrorCodeNumber", "0 java://test/a"),
                    ends(thrown, "FindClass com/corvallen/storage/provider/ProviderException", thrown.report()),
                    ends(thrown, "IsInstanceOf", thrown.report())}});
}

Rules bugs(const Thrown& thrown) {
    return joined({lookUps(thrown),
                   {ends(thrown, "CallObjectMethod getName", thrown.report("", thrown.message)),
                    ends(thrown, "CallObjectMethod getMessage", thrown.report(thrown.className, "")),
                    ends(thrown, "FindClass com/corvallen/storage/provider/ProviderException", thrown.report()),
                    ends(thrown, "IsInstanceOf", thrown.report())}});
}

Rules wherever() {
    // The search for the class goes on with the next loader, and FindClass ends it well.
    const auto search = [](const char* call) {
        return SweepRule{.operation = "end in", .call = call, .before = Pending, .text = AsEver};
    };
    // No exception object means no exception to translate: what the call gave is the result.
    const auto unseen = [](const char* operation, const char* text) {
        return SweepRule{.operation = operation, .call = "ExceptionOccurred", .text = text, .leavesException = true};
    };
    SweepRule chars = wantOfMemory("end in", "GetStringChars");
    chars.before = Pending;
    return {
        search("NewStringUTF"),
        search("CallObjectMethod loadClass"),
        search("CallObjectMethod getParent"),
        search("CallObjectMethod getClassLoader"),
        unseen("end in a back end's error, of a stream", "0 "),
        unseen("end in a bug, of a stream", "0 "),
        unseen("end in a back end's error", "false"),
        unseen("end in a bug", "false"),
        chars,
    };
}

}  // namespace

std::vector<SweepRule> translationRules() {
    return joined({errors(OwnError), errors(PlainError), bugs(BugOfStream), bugs(Bug), wherever()});
}

}  // namespace storage::javaprovider::test
