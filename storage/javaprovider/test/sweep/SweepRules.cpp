#include "sweep/SweepRules.h"

#include <iterator>

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Promise;
using enum SweepRule::Way;
using enum SweepRule::Before;
using Rules = std::vector<SweepRule>;

constexpr const char* Injected = "java.lang.OutOfMemoryError: made to fail by a test";
constexpr const char* Unexpected =
    "ProviderCallback threw an unexpected java.lang.OutOfMemoryError. The message was: made to fail by a test";

// ---- guards and look-ups, wherever they are ----

Rules guards() {
    return {
        {.operation = "destroy provider",
         .call = "PushLocalFrame",
         .text = AsEver,
         .lost = SweepRule::Lost::ThoseOfProvider},
        {.operation = "destroy stream",
         .call = "PushLocalFrame",
         .text = AsEver,
         .lost = SweepRule::Lost::ThatOfStream},
        {.call = "PushLocalFrame", .ending = Ending::InternalBadAlloc},
    };
}

Rules constructorLookUps() {
    const std::string uriConstructor = "GetMethodID com/corvallen/storage/provider/StorageURI <init>";
    const std::string publisherConstructor = "GetMethodID com/corvallen/storage/provider/NativePublisher <init>";
    const std::string backEndConstructor = "GetMethodID com/corvallen/storage/test/data/PublishingProvider <init>";
    return {
        {.call = uriConstructor,
         .way = WithError,
         .ending = Ending::InternalError,
         .text = std::string("Method constructor not found.\n") + Injected},
        {.call = uriConstructor, .way = Silently, .text = AsEver},
        {.call = publisherConstructor,
         .way = WithError,
         .ending = Ending::InternalError,
         .text = std::string("Method NativePublisher constructor not found.\n") + Injected},
        {.call = publisherConstructor, .way = Silently, .text = AsEver},
        {.call = backEndConstructor, .way = Silently, .text = AsEver, .keepsFeatureClass = false, .usable = false},
        {.operation = "refuse a class whose constructor throws",
         .call = "GetMethodID com/corvallen/storage/test/ThrowingConstructorProvider <init>",
         .way = Silently,
         .text = "made",
         .keepsFeatureClass = false,
         .usable = false},
    };
}

Rules otherLookUps() {
    // A class that is not found has no methods.
    const auto systemClass = [](const std::string& name, SweepRule::Way way, SweepRule::Before before) {
        return SweepRule{.call = "FindClass " + name,
                         .way = way,
                         .before = before,
                         .ending = Ending::InternalError,
                         .text = "not found"};
    };
    return {
        {.operation = "configure", .call = "GetMethodID", .ending = Ending::InternalBadAlloc},
        {.operation = "refuse a class whose constructor throws",
         .call = "GetMethodID java/lang/IllegalStateException toString",
         .ending = Ending::InternalError},
        {.operation = "refuse",
         .call = "GetMethodID java/lang/NoClassDefFoundError toString",
         .ending = Ending::InternalError},
        {.call = "GetMethodID", .way = WithError, .ending = Ending::InternalError, .text = Injected},
        {.call = "GetMethodID",
         .way = Silently,
         .before = Pending,
         .ending = Ending::InternalError,
         .text = "not found"},
        systemClass("java/lang/Class", WithError, Any),
        systemClass("java/lang/Class", Silently, Pending),
        systemClass("java/lang/ClassLoader", WithError, Any),
        systemClass("java/lang/ClassLoader", Silently, Pending),
        {.call = "FindClass com/corvallen/storage/provider/ExtendedAttribute",
         .way = WithError,
         .ending = Ending::InternalError,
         .text = std::string("Method getName with signature ()Ljava/lang/String; not found.\n") + Injected},
        {.operation = "configure", .call = "FindClass java/util/HashMap", .ending = Ending::InternalBadAlloc},
    };
}

// ---- making a provider ----

Rules makings() {
    const std::string backEnd = "com/corvallen/storage/test/data/PublishingProvider";
    const auto unusable = [](const char* operation, const std::string& call) {
        return SweepRule{.operation = operation,
                         .call = call,
                         .way = Silently,
                         .text = "made",
                         .keepsFeatureClass = false,
                         .usable = false};
    };
    const auto described = [](const char* operation, const std::string& call, const std::string& text) {
        return SweepRule{
            .operation = operation, .call = call, .way = WithError, .ending = Ending::InternalError, .text = text};
    };
    const std::string notFound = std::string("Failed to find Java Provider implementation class ") + Injected;
    const std::string notMade = std::string("Failed to instantiate Java Provider implementation. ") + Injected;
    return {
        unusable("make by", "FindClass " + backEnd),
        unusable("make by", "NewObject " + backEnd),
        described("make by class", "FindClass " + backEnd, Injected),
        described("make by factory", "FindClass " + backEnd, notFound),
        described("make by class", "NewObject " + backEnd, Injected),
        described("make by factory", "NewObject " + backEnd, notMade),
    };
}

Rules constructions() {
    return {
        // A null object is no error of construction, whatever made it null.
        {.operation = "make",
         .call = "GetObjectClass",
         .text = "made",
         .leavesException = true,
         .keepsFeatureClass = false,
         .usable = false},
        {.operation = "make", .call = "NewGlobalRef", .occurrence = 1, .ending = Ending::BadAlloc},
        // The references to the classes are not looked at.
        {.operation = "make",
         .call = "NewGlobalRef",
         .occurrence = 5,
         .text = "made",
         .keepsFeatureClass = false,
         .usable = false},
        {.operation = "make", .call = "NewGlobalRef", .text = "made", .usable = false},
        // The search for a class goes on, and what went wrong on its way is forgotten once it ends well.
        {.operation = "make", .call = "NewStringUTF", .text = "made"},
        {.operation = "make", .call = "CallObjectMethod loadClass", .text = "made"},
        {.operation = "make", .call = "CallObjectMethod getClassLoader", .text = "made"},
    };
}

// ---- construction that is refused in any case: the description of the Java error ----

Rules refusals() {
    const auto fails = [](const char* call) {
        return SweepRule{
            .operation = "refuse", .call = call, .way = WithError, .ending = Ending::InternalError, .text = Injected};
    };
    const auto unusable = [](const char* call) {
        return SweepRule{.operation = "refuse",
                         .call = call,
                         .way = Silently,
                         .text = "made",
                         .keepsFeatureClass = false,
                         .usable = false};
    };
    return {
        fails("FindClass"),
        unusable("FindClass"),
        fails("NewObject"),
        unusable("NewObject"),
        {.operation = "refuse", .call = "CallObjectMethod toString", .ending = Ending::InternalError},
        {.operation = "refuse", .call = "GetStringChars", .way = WithError, .ending = Ending::InternalBadAlloc},
        {.operation = "refuse", .call = "GetStringChars", .way = Silently, .ending = Ending::InternalError},
    };
}

// ---- what the back end threw is being translated ----

Rules translations() {
    const auto row = [](const char* operation, const char* call, Ending ending, const std::string& text = {}) {
        return SweepRule{.operation = operation, .call = call, .before = Pending, .ending = ending, .text = text};
    };
    // The search for the class goes on with the next loader, and FindClass ends it well.
    const auto search = [](const char* call) {
        return SweepRule{.operation = "end in", .call = call, .before = Pending, .text = AsEver};
    };
    return {
        // No exception object means no exception to translate.
        {.operation = "end in", .call = "ExceptionOccurred", .leavesException = true},
        search("NewStringUTF"),
        search("CallObjectMethod loadClass"),
        search("CallObjectMethod getParent"),
        search("CallObjectMethod getClassLoader"),
        row("end in a back end's error", "CallObjectMethod getLocationString", Ending::ProviderError, "11 "),
        row("end in a back end's error", "CallIntMethod getErrorCodeNumber", Ending::ProviderError, "0 java://test/a"),
        row("end in", "CallObjectMethod getName", Ending::InternalError, "ProviderCallback threw an unexpected . "),
        row("end in", "CallObjectMethod getMessage", Ending::InternalError, "ProviderCallback threw an unexpected "),
        // Not known to be the back end's, it is a bug like any other.
        row("end in", "FindClass com/corvallen/storage/provider/ProviderException", Ending::InternalError,
            "ProviderCallback threw an unexpected "),
        row("end in", "IsInstanceOf", Ending::InternalError, "ProviderCallback threw an unexpected "),
        row("end in", "GetStringChars", Ending::InternalBadAlloc),
    };
}

// ---- what an operation asks of the back end and of its values ----

/// A call whose exception is translated before its result is looked at.
SweepRule checked(const char* call) {
    return {.call = call, .way = WithError, .ending = Ending::InternalError, .text = Unexpected};
}

SweepRule returns(const char* operation, const char* call, const char* text) {
    return {.operation = operation, .call = call, .way = Silently, .text = text};
}

Rules backEndCalls() {
    return {
        {.operation = "destroy provider", .call = "CallVoidMethod dispose", .text = AsEver, .leavesException = true},
        {.operation = "hasFeature", .call = "GetStaticObjectField", .text = "false", .leavesException = true},
        // The one call whose exception is neither translated nor cleared.
        {.operation = "hasFeature", .call = "CallBooleanMethod hasFeature", .text = "false", .leavesException = true},
        checked("CallBooleanMethod fileExists"),
        checked("CallBooleanMethod folderExists"),
        returns("", "CallBooleanMethod fileExists", "false"),
        returns("", "CallBooleanMethod folderExists", "false"),
        checked("CallObjectMethod getFileAttributes"),
        checked("CallObjectMethod getFolderAttributes"),
        checked("CallObjectMethod getExtendedAttributes"),
        checked("CallObjectMethod getProviderStorageInfo"),
        checked("CallObjectMethod listFolder"),
        checked("CallObjectMethod getChannel"),
        checked("CallObjectMethod getReadOnlyChannel"),
        checked("CallObjectMethod put"),
        returns("configure", "CallObjectMethod put", AsEver),
        checked("CallVoidMethod"),
        returns("", "CallVoidMethod", AsEver),
    };
}

Rules values() {
    // Nothing is asked after a getter: the contract's values throw from none. What one gives counts, and an exception
    // stays where it is.
    const auto getter = [](const char* operation, const char* call, const char* text = "") {
        return SweepRule{.operation = operation, .call = call, .text = text, .leavesException = true};
    };
    return {
        getter("file attributes", "CallBooleanMethod isWritable", "7 false"),
        getter("file attributes", "CallLongMethod getLastModified", "7 true"),
        getter("file attributes", "CallLongMethod getSize", "0 true"),
        getter("folder attributes", "CallBooleanMethod isWritable", "false"),
        getter("folder attributes", "CallLongMethod getLastModified", "true"),
        getter("storage info", "CallLongMethod getStorageCapacity", "0"),
        getter("storage info", "CallLongMethod getSpaceOccupied", "10"),
        getter("list", "CallObjectMethod getName"),
        getter("list", "CallBooleanMethod isFolder"),
        getter("list", "IsInstanceOf"),
        getter("", "GetArrayLength"),
        // Name and value of an extended attribute are the exception: they are asked after.
        {.operation = "extended attributes",
         .call = "CallObjectMethod",
         .way = WithError,
         .ending = Ending::InternalError,
         .text = Unexpected},
        {.operation = "extended attributes", .call = "CallObjectMethod", .way = Silently},
        // JNI looks the class of a value up without a failure; were there one, no getter would be found.
        {.call = "GetObjectClass", .way = WithError, .ending = Ending::InternalError, .text = Injected},
    };
}

Rules streamsAndEvents() {
    return {
        {.operation = "open", .call = "NewGlobalRef", .way = WithError, .ending = Ending::InternalBadAlloc},
        // Without an exception the stream is made, over nothing.
        {.operation = "open", .call = "NewGlobalRef", .way = Silently, .text = AsEver, .usable = false},
        checked("CallIntMethod"),
        checked("CallLongMethod"),
        {.call = "CallIntMethod", .way = Silently, .text = "0"},
        {.call = "CallLongMethod", .way = Silently, .text = "1"},
        {.call = "NewDirectByteBuffer", .way = WithError, .ending = Ending::InternalBadAlloc},
        {.operation = "end in", .call = "NewDirectByteBuffer", .way = Silently, .text = AsEver},
        {.call = "NewDirectByteBuffer",
         .way = Silently,
         .ending = Ending::InternalError,
         .text = "ProviderCallback threw an unexpected java.lang.NullPointerException"},
        {.call = "RegisterNatives", .ending = Ending::RuntimeError, .text = "Problem registering native method"},
        {.operation = "start",
         .call = "NewObject com/corvallen/storage/provider/NativePublisher",
         .way = WithError,
         .ending = Ending::InternalError,
         .text = Unexpected},
        {.operation = "start",
         .call = "NewObject com/corvallen/storage/provider/NativePublisher",
         .way = Silently,
         .text = AsEver},
        // A publisher that cannot be found again is replaced by the next request.
        {.call = "NewWeakGlobalRef", .text = AsEver},
        {.operation = "start",
         .call = "NewLocalRef",
         .way = WithError,
         .ending = Ending::InternalError,
         .text = Unexpected},
        {.operation = "start", .call = "NewLocalRef", .way = Silently, .text = AsEver},
    };
}

Rules texts() {
    const auto unknown = [](std::size_t occurrence, const char* text) {
        return SweepRule{.operation = "nativePublish",
                         .call = "GetStringChars",
                         .way = Silently,
                         .occurrence = occurrence,
                         .ending = Ending::RuntimeError,
                         .text = text};
    };
    return {
        unknown(1, "Java provider: Unknown kind."),
        unknown(4, "Java provider: Unknown entry type."),
        {.operation = "nativePublish", .call = "GetStringChars", .way = Silently, .text = AsEver},
        {.call = "GetStringChars", .way = WithError, .ending = Ending::InternalBadAlloc},
        {.call = "GetStringChars", .way = Silently},
        {.call = "NewString", .way = WithError, .ending = Ending::InternalBadAlloc},
        {.call = "NewString", .way = Silently, .text = AsEver},
        {.operation = "configure", .call = "NewObject java/util/HashMap", .ending = Ending::InternalBadAlloc},
        {.call = "NewObject com/corvallen/storage/provider/StorageURI",
         .way = WithError,
         .ending = Ending::InternalBadAlloc},
        {.call = "NewObject com/corvallen/storage/provider/StorageURI", .way = Silently, .text = AsEver},
    };
}

}  // namespace

std::string SweepPoint::toString() const {
    return operation + ": " + call.toString() + " (number " + std::to_string(occurrence) + " of its function) fails " +
           (failing == Failing::WithError ? "with an OutOfMemoryError" : "without an exception");
}

bool SweepRule::fits(const SweepPoint& point) const {
    const bool wayFits = way == Either || (way == WithError) == (point.failing == Failing::WithError);
    const bool beforeFits = before == Any || (before == Pending) == point.call.pendingBefore;
    return wayFits && beforeFits && point.operation.starts_with(operation) && point.call.matches(call) &&
           (occurrence == 0 || occurrence == point.occurrence);
}

const std::vector<SweepRule>& sweepRules() {
    static const Rules all = [] {
        Rules joined;
        for (Rules part : {guards(), constructorLookUps(), otherLookUps(), untestedCalls(), translations(), refusals(),
                           makings(), constructions(), backEndCalls(), values(), streamsAndEvents(), texts()}) {
            std::move(part.begin(), part.end(), std::back_inserter(joined));
        }
        return joined;
    }();
    return all;
}

}  // namespace storage::javaprovider::test
