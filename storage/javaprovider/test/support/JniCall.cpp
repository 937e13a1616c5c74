#include "support/JniCall.h"

#include <atomic>
#include <stdexcept>

namespace storage::javaprovider::test {

namespace {

bool isReference(char type) { return type == 'L' || type == '['; }

const JniArgument& argumentOfType(const JniCall& call, std::size_t index, char type) {
    const JniArgument& argument = call.arguments.at(index);
    const char found = isReference(argument.type) ? 'L' : argument.type;
    if (found != type) {
        throw std::logic_error(call.toString() + ": argument " + std::to_string(index) + " is of type " +
                               argument.type + ", not " + type);
    }
    return argument;
}

}  // namespace

ThreadNumber thisThread() noexcept {
    // Relaxed: only the uniqueness of the numbers matters.
    static std::atomic<ThreadNumber> last = 0;
    thread_local const ThreadNumber number = last.fetch_add(1, std::memory_order_relaxed) + 1;
    return number;
}

std::string JniCall::toString() const {
    std::string line(name());
    if (!text.empty()) {
        line += ' ';
        line += text;
    }
    return line;
}

bool JniCall::matches(std::string_view pattern) const {
    const std::string line = toString();
    if (!line.starts_with(pattern)) {
        return false;
    }
    return line.size() == pattern.size() || line[pattern.size()] == ' ' || line[pattern.size()] == '(';
}

bool JniCall::booleanArgument(std::size_t index) const {
    return argumentOfType(*this, index, 'Z').value.z != JNI_FALSE;
}

std::int32_t JniCall::intArgument(std::size_t index) const { return argumentOfType(*this, index, 'I').value.i; }

std::int64_t JniCall::longArgument(std::size_t index) const { return argumentOfType(*this, index, 'J').value.j; }

jobject JniCall::objectArgument(std::size_t index) const { return argumentOfType(*this, index, 'L').value.l; }

ReferenceNumber JniCall::referenceArgument(std::size_t index) const {
    return argumentOfType(*this, index, 'L').reference;
}

bool CallFilter::accepts(const JniCall& call) const {
    if (!allThreads && call.thread != thread.value_or(thisThread())) {
        return false;
    }
    if (!exceptionChecks && call.name() == "ExceptionCheck") {
        return false;
    }
    if (!localFrames && (call.name() == "PushLocalFrame" || call.name() == "PopLocalFrame")) {
        return false;
    }
    return only.empty() || call.matches(only);
}

}  // namespace storage::javaprovider::test
