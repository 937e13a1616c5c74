#include "support/FunctionTable.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "support/CallDescription.h"
#include "support/JniFunction.h"
#include "support/Recording.h"

namespace storage::javaprovider::test {

namespace {

jniNativeInterface machine{};
bool saved = false;

void check(jvmtiError error, const char* what) {
    if (error != JVMTI_ERROR_NONE) {
        throw std::runtime_error(std::string(what) + ": JVMTI error " + std::to_string(error));
    }
}

/// One object for each entry, so that its address can be a template argument.
#define JNI_FUNCTION(entry, name, effect, fallibility, status, kind) \
    constexpr JniFunction entry##Function{#name, ReferenceEffect::effect, Fallibility::fallibility, status};
#include "support/JniFunctionList.inc"
#undef JNI_FUNCTION

void raise(JNIEnv* env, const PlannedFailure& failure) {
    if (failure.exceptionClass == nullptr) {
        return;
    }
    // As in the machine, the newer failure takes the place of one that was pending.
    machine.ExceptionClear(env);
    machine.ThrowNew(env, failure.exceptionClass, "made to fail by a test");
}

template <class Result>
Result failureResult(const JniFunction& function) {
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else if constexpr (!std::is_void_v<Result>) {
        return static_cast<Result>(function.failureStatus);
    }
}

/// One recorded call, from before the machine sees it to after.
class RunningCall {
public:
    RunningCall(Recording& recording, JNIEnv* env, JniCall& call) : m_recording(recording), m_env(env), m_call(call) {
        m_call.thread = thisThread();
        m_call.pendingBefore = machine.ExceptionCheck(env) != JNI_FALSE;
        m_ticket = recording.begin(call);
    }

    /// Whether the call is to fail; if so, what it leaves pending is pending.
    [[nodiscard]] bool fails() {
        if (m_ticket.failure) {
            raise(m_env, *m_ticket.failure);
        }
        return m_ticket.failure.has_value();
    }

    template <class Result>
    void end(Result result) {
        if constexpr (std::is_pointer_v<Result>) {
            m_call.result = result;
        }
        m_call.pendingAfter = machine.ExceptionCheck(m_env) != JNI_FALSE;
        m_recording.end(m_ticket, m_call, /*succeeded=*/result == Result{});
    }

private:
    Recording& m_recording;
    JNIEnv* m_env;
    JniCall& m_call;
    Recording::Ticket m_ticket;
};

/// The function that takes the place of one entry of the table.
template <auto Entry, const JniFunction& Function, class Kind>
struct Replacement;

template <class Result, class... Arguments, Result (*JNINativeInterface_::*Entry)(JNIEnv*, Arguments...),
          const JniFunction& Function, class Kind>
struct Replacement<Entry, Function, Kind> {
    static Result call(JNIEnv* env, Arguments... arguments) {
        const auto recording = Recording::forCaller(__builtin_return_address(0));
        if (!recording) {
            return (machine.*Entry)(env, arguments...);
        }
        JniCall record;
        record.function = &Function;
        Kind::describe(record, recording->names(), arguments...);
        RunningCall running(*recording, env, record);
        if (running.fails()) {
            running.end(nullptr);
            return failureResult<Result>(Function);
        }
        if constexpr (std::is_void_v<Result>) {
            (machine.*Entry)(env, arguments...);
            running.end(nullptr);
        } else {
            const Result result = (machine.*Entry)(env, arguments...);
            running.end(result);
            return result;
        }
    }
};

jniNativeInterface recordingFunctions() {
    jniNativeInterface table = machine;
#define JNI_FUNCTION(entry, name, effect, fallibility, status, kind) \
    table.entry = &Replacement<&JNINativeInterface_::entry, entry##Function, kind>::call;
#include "support/JniFunctionList.inc"
#undef JNI_FUNCTION
    return table;
}

}  // namespace

const JniFunction* findJniFunction(const char* name) noexcept {
#define JNI_FUNCTION(entry, shown, effect, fallibility, status, kind) \
    if (std::string_view(entry##Function.name) == name) {             \
        return &entry##Function;                                      \
    }
#include "support/JniFunctionList.inc"
#undef JNI_FUNCTION
    return nullptr;
}

const jniNativeInterface& machineFunctions() noexcept { return machine; }

void saveFunctionTable(jvmtiEnv* jvmti) {
    if (saved) {
        return;
    }
    jniNativeInterface* table = nullptr;
    check(jvmti->GetJNIFunctionTable(&table), "cannot read the JNI function table");
    machine = *table;
    saved = true;
    check(jvmti->Deallocate(reinterpret_cast<unsigned char*>(table)), "cannot free the JNI function table");
}

void installRecordingFunctions(jvmtiEnv* jvmti) {
    const jniNativeInterface table = recordingFunctions();
    check(jvmti->SetJNIFunctionTable(&table), "cannot set the JNI function table");
}

void restoreMachineFunctions(jvmtiEnv* jvmti) {
    check(jvmti->SetJNIFunctionTable(&machine), "cannot restore the JNI function table");
}

}  // namespace storage::javaprovider::test
