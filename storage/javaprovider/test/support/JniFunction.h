#pragma once

namespace storage::javaprovider::test {

/// What a JNI function does to the references of its caller.
enum class ReferenceEffect {
    None,
    MakesLocal,
    MakesGlobal,
    MakesWeak,
    MakesChars,
    FreesLocal,
    FreesGlobal,
    FreesWeak,
    FreesChars,
    PushesFrame,
    PopsFrame,
};

/// Whether a test can make a JNI function fail.
enum class Fallibility {
    Never,   ///< it has no way to report a failure
    ByName,  ///< it gives null only for a null or by a broken promise: fails when a JniFault names it
    Always,  ///< it may fail in every program: fails for a JniFault that names no call, too
};

/// What the recorder knows about one JNI function. There is one object for each; it lives for ever.
struct JniFunction {
    const char* name;
    ReferenceEffect effect;
    Fallibility fallibility;
    int failureStatus = 0;  ///< what the function gives on failure when it gives a number
};

/// The function of that name (without the suffix of its variants), or null when the recorder does not wrap it.
[[nodiscard]] const JniFunction* findJniFunction(const char* name) noexcept;

}  // namespace storage::javaprovider::test
