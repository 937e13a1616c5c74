// The calls whose failure the library does not look at, and why: after them it would end the process.
#include "sweep/SweepRules.h"

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Way;
using enum SweepRule::Before;

constexpr const char* NeverNull = "JNI has no such failure: every object has a class";
constexpr const char* AlwaysThrows = "JNI throws whenever it gives null; the null alone would be used at once";
constexpr const char* NullIsAgainstTheContract = "the contract wants an object or an exception, never null";
constexpr const char* NothingIsAsked = "getters of values do not throw, nothing is asked after them; null is as above";

std::vector<SweepRule> makeTable() {
    const auto row = [](const char* operation, const char* call, const char* reason, SweepRule::Way way = WithError,
                        SweepRule::Before before = Any) {
        return SweepRule{.operation = operation, .call = call, .way = way, .before = before, .reason = reason};
    };
    const auto lookUp = [&row](const char* call) { return row("", call, AlwaysThrows, Silently, Clean); };

    return {
        row("file attributes", "CallObjectMethod getFileAttributes", NullIsAgainstTheContract, Silently),
        row("folder attributes", "CallObjectMethod getFolderAttributes", NullIsAgainstTheContract, Silently),
        row("extended attributes", "CallObjectMethod getExtendedAttributes", NullIsAgainstTheContract, Silently),
        row("extended attributes", "CallObjectMethod getAllAttributes", NothingIsAsked, Either),
        row("extended attributes", "GetObjectArrayElement", NullIsAgainstTheContract, Either),
        row("storage info", "CallObjectMethod getProviderStorageInfo", NullIsAgainstTheContract, Silently),
        row("list", "CallObjectMethod listFolder", NullIsAgainstTheContract, Silently),
        row("end in an error of the back end's own class", "CallObjectMethod listFolder", NullIsAgainstTheContract,
            Silently),
        row("list", "GetObjectArrayElement", "a null element counts as an entry and must not occur", Either),
        row("open stream", "CallObjectMethod getChannel", NullIsAgainstTheContract, Silently),
        row("open read-only stream", "CallObjectMethod getReadOnlyChannel", NullIsAgainstTheContract, Silently),
        row("hasFeature", "GetStaticFieldID", "the enumeration has its constants; the field ID is not looked at",
            Either),
        lookUp("FindClass java/lang/Class"),
        lookUp("FindClass java/lang/ClassLoader"),
        lookUp("FindClass com/corvallen/storage/provider/ExtendedAttribute"),
        lookUp("GetMethodID java/lang/Class"),
        lookUp("GetMethodID java/lang/ClassLoader"),
        lookUp("GetMethodID com/corvallen/storage/provider/FileAttributes"),
        lookUp("GetMethodID com/corvallen/storage/provider/FolderAttributes"),
        lookUp("GetMethodID com/corvallen/storage/provider/ExtendedAttributes"),
        lookUp("GetMethodID com/corvallen/storage/provider/ExtendedAttribute"),
        lookUp("GetMethodID com/corvallen/storage/provider/ProviderStorageInfo"),
        lookUp("GetMethodID com/corvallen/storage/provider/FolderListEntry"),
        row("refuse", "ExceptionOccurred", "JNI has no such failure: it follows a check that an exception is pending",
            Either),
        row("refuse", "GetObjectClass", NeverNull, Either),
        row("end in an error of the back end's own class", "ExceptionOccurred",
            "JNI has no such failure; a listing without an exception would be the null that came instead", Either),
        row("end in", "GetObjectClass", NeverNull, Either),
        row("file attributes", "GetObjectClass", NeverNull, Silently),
        row("folder attributes", "GetObjectClass", NeverNull, Silently),
        row("extended attributes", "GetObjectClass", NeverNull, Silently),
        row("storage info", "GetObjectClass", NeverNull, Silently),
    };
}

}  // namespace

const std::vector<SweepRule>& untestedCalls() {
    static const std::vector<SweepRule> table = makeTable();
    return table;
}

}  // namespace storage::javaprovider::test
