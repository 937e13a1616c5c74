#pragma once

#include <jni.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/JniFunction.h"

namespace storage::javaprovider::test {

/// A number that names one thread for the life of the process; unlike a std::thread::id it is never used again.
using ThreadNumber = std::uint32_t;

/// The calling thread's number.
[[nodiscard]] ThreadNumber thisThread() noexcept;

/// A number that names one reference for the life of a recorder, though the machine uses a handle's value again.
/// Zero: null, or a reference that was not made under the recorder.
using ReferenceNumber = std::uint64_t;

/// One argument of a recorded Java call.
struct JniArgument {
    char type;                      ///< first letter of the JVM descriptor: Z B C S I J F D L or [
    jvalue value;                   ///< the value; a reference is valid only while the test knows that it is
    ReferenceNumber reference = 0;  ///< for L and [
};

/// One call of a JNI function, as it was made.
struct JniCall {
    const JniFunction* function = nullptr;  ///< what was called; lives for ever
    ThreadNumber thread = 0;                ///< who called
    std::string text;                       ///< what follows the function's name in toString(); may be empty
    std::vector<JniArgument> arguments;     ///< of NewObject and Call…Method, in order

    jobject target = nullptr;             ///< the object, class or reference it was called on, if it takes one
    ReferenceNumber targetReference = 0;  ///< the number of `target`
    const void* released = nullptr;       ///< what a Delete… or Release… function gives back
    const void* result = nullptr;         ///< a reference, ID or pointer that it gave; null for numbers and void
    ReferenceNumber resultReference = 0;  ///< the number of `result` if it is a reference

    bool pendingBefore = false;  ///< a Java exception was pending when the call was made
    bool pendingAfter = false;   ///< and when it ended
    bool failedOnPurpose = false;
    bool finished = false;  ///< false while the call runs

    /// The name of the function, without the suffix of its variants: "CallVoidMethod", "NewObject".
    [[nodiscard]] std::string_view name() const noexcept { return function->name; }

    /// One line: only the name, or the name, a space and
    ///  - FindClass: the class as it was asked for
    ///  - IsInstanceOf, ThrowNew: the class ("java/lang/String")
    ///  - GetMethodID, GetStaticMethodID: class, blank, name and signature: "java/util/HashMap <init>()V"
    ///  - GetStaticFieldID, GetStaticObjectField: class, blank, field name
    ///  - NewObject, CallStatic…Method: the same as for the lookup of the method
    ///  - Call…Method: name and signature: "createFile(Lcom/corvallen/storage/provider/StorageURI;)V"
    ///  - NewStringUTF, NewString: the text (UTF-8)
    ///  - GetObjectArrayElement: the index; NewDirectByteBuffer: the capacity
    ///  - RegisterNatives: class, blank, names and signatures, separated by blanks
    [[nodiscard]] std::string toString() const;

    /// Whether `pattern` names this call: the function, toString() in full, or toString() up to a blank or "(":
    /// "CallVoidMethod", "CallVoidMethod createFile", "GetMethodID java/util/HashMap", "NewString java://a".
    [[nodiscard]] bool matches(std::string_view pattern) const;

    /// The `index`-th argument of a Java call; std::out_of_range when there is none, std::logic_error when it is of
    /// another type.
    [[nodiscard]] bool booleanArgument(std::size_t index) const;
    [[nodiscard]] std::int32_t intArgument(std::size_t index) const;
    [[nodiscard]] std::int64_t longArgument(std::size_t index) const;
    [[nodiscard]] jobject objectArgument(std::size_t index) const;
    /// The number of a reference argument, to compare with the `resultReference` of the call that made it.
    [[nodiscard]] ReferenceNumber referenceArgument(std::size_t index) const;
};

/// Which calls a question to the recorder is about; made for designated initializers:
/// `recorder.calls({.exceptionChecks = false, .localFrames = false})`.
struct CallFilter {
    bool allThreads = false;                  ///< calls of every thread, in the order in which they began
    std::optional<ThreadNumber> thread = {};  ///< calls of this thread; by default those of the calling thread
    bool exceptionChecks = true;              ///< keep ExceptionCheck
    bool localFrames = true;                  ///< keep PushLocalFrame and PopLocalFrame
    std::string only = {};                    ///< when not empty, only calls that match this pattern

    [[nodiscard]] bool accepts(const JniCall& call) const;
};

}  // namespace storage::javaprovider::test
