#pragma once

#include <jni.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/JniCall.h"
#include "support/JniFault.h"

namespace storage::javaprovider::test {

class Recording;

/// Records the JNI calls of native code while it lives, counts the references they make, and makes chosen calls fail.
///
/// Puts its own functions into the virtual machine's JNI function table (JVMTI), so it sees every thread, attached
/// before or after. Calls made by the Java runtime's own libraries are neither recorded, counted nor failed; calls of
/// a native method that Java calls back are. Safe to use from any thread. It runs no Java code and does not block.
///
/// Hazards:
///  - One at a time: making a second one throws std::logic_error.
///  - The test's own JNI calls are calls of native code too. Make them inside an Unrecorded scope (the helpers of this
///    folder do), or clear() afterwards.
///  - Functions that are not in its table pass unseen: field access, arrays of primitives, critical regions,
///    monitors, the C variants with "…". C++ code reaches the variants with va_list, which are covered.
///  - Attaching and detaching belong to the JavaVM table and pass unseen; FakeJVM counts those.
///  - Local references that a native method leaves to the machine when it returns to Java count as released when the
///    recorded call returns that led to it; on a thread that Java started they count as live.
///  - Every call asks whether an exception is pending. Under -Xcheck:jni this hides the warning that a call was made
///    without the check that was due; the other warnings stay.
///  - A native method whose very last step is a JNI call may be taken for code of the runtime (its return address is
///    Java's own) and go unrecorded.
class JniRecorder {
public:
    /// Starts recording. Attaches the calling thread for the moment if it is not attached.
    /// Throws std::logic_error when another recorder lives, std::runtime_error when the machine has no JVMTI.
    explicit JniRecorder(JavaVM* vm);

    /// Puts the machine's own functions back. Calls that still run on other threads end normally, unrecorded.
    ~JniRecorder();

    JniRecorder(const JniRecorder&) = delete;
    JniRecorder& operator=(const JniRecorder&) = delete;

    /// The recorder that lives now, or null. The pointer is good as long as the caller knows that the recorder is.
    [[nodiscard]] static JniRecorder* current() noexcept;

    /// The calls that the filter lets through, one line each (JniCall::toString()), in the order in which they began:
    /// `EXPECT_THAT(recorder.calls(), ElementsAre("FindClass java/util/HashMap", …))`.
    [[nodiscard]] std::vector<std::string> calls(const CallFilter& filter = {}) const;
    /// The same with everything that is known of each call.
    [[nodiscard]] std::vector<JniCall> records(const CallFilter& filter = {}) const;
    /// The only record that the pattern matches on the calling thread; std::logic_error when there are none or several.
    [[nodiscard]] JniCall record(const std::string& pattern) const;
    /// How many calls of the calling thread the pattern matches (see JniCall::matches()).
    [[nodiscard]] std::size_t count(const std::string& pattern) const;
    /// The same over all threads.
    [[nodiscard]] std::size_t countOnAllThreads(const std::string& pattern) const;

    /// Local references the thread made since the start or the last clear(), less those it released; negative when it
    /// released more than it made. A popped frame releases what is left in it.
    [[nodiscard]] long liveLocals() const { return liveLocals(thisThread()); }
    [[nodiscard]] long liveLocals(ThreadNumber thread) const;
    /// The most local references that the calling thread had live at a time since the start or the last clear().
    [[nodiscard]] long peakLocals() const;
    /// One line for each local reference that was live when its frame was popped, on any thread, since the start or the
    /// last time that this was asked (not the last clear()): the calls it comes from. What code releases itself is not
    /// among them.
    [[nodiscard]] std::vector<std::string> takeLeftToFrames();
    /// Counted for the whole process: global references, weak global references, and string characters that
    /// GetStringChars and GetStringUTFChars gave.
    [[nodiscard]] long liveGlobals() const;
    [[nodiscard]] long liveWeaks() const;
    [[nodiscard]] long liveChars() const;
    /// One line for each reference that was made and is not released, on all threads: its kind, and the calls it comes
    /// from. Empty when everything was released.
    [[nodiscard]] std::vector<std::string> leaks() const;

    /// Makes one call fail, once. The call is recorded but never reaches the machine.
    /// Throws std::invalid_argument when the pattern names a function that cannot fail, or the recorder does not know.
    void fail(JniFault fault);
    /// How many faults have not happened yet; zero proves that each did.
    [[nodiscard]] std::size_t faultsLeft() const;
    /// How many calls of the calling thread a JniFault without a pattern would have counted: the length of a sweep.
    [[nodiscard]] std::size_t fallibleCalls() const;

    /// Forgets calls, faults and references: counting starts anew.
    void clear();
    /// Whether calls are kept (at first they are). Without, only references are counted and faults happen.
    void keepCalls(bool keep);

    /// While one lives, the JNI calls of its thread are not recorded, counted or failed.
    class Unrecorded {
    public:
        Unrecorded() noexcept;
        ~Unrecorded();
        Unrecorded(const Unrecorded&) = delete;
        Unrecorded& operator=(const Unrecorded&) = delete;
    };

private:
    JavaVM* m_vm;
    std::shared_ptr<Recording> m_recording;
};

}  // namespace storage::javaprovider::test
