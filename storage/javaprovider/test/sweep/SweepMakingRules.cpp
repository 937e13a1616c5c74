// Making a provider.
#include "sweep/SweepNames.h"
#include "sweep/SweepRuleParts.h"

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Way;
using Rules = std::vector<SweepRule>;

const std::vector<SweepRule::Broken> Everything = {{"*", Incomplete}};
const std::string NotFound = "Failed to find Java Provider implementation class ";
const std::string NotMade = "Failed to instantiate Java Provider implementation. ";

/// A provider over nothing: a null object is no error of construction, whatever made it null.
SweepRule overNothing(const char* operation, const std::string& call) {
    return {.operation = operation,
            .call = call,
            .way = Silently,
            .text = "made",
            .keepsFeatureClass = false,
            .broken = Everything};
}

SweepRule describes(const char* operation, const std::string& call, const std::string& text) {
    return {.operation = operation, .call = call, .way = WithError, .ending = Ending::InternalError, .text = text};
}

/// The back end is made by its class.
Rules instances() {
    const std::string backEnd = SweptBackEnd;
    return {
        overNothing("make by", "FindClass " + backEnd),
        overNothing("make by", "GetMethodID " + backEnd + " <init>"),
        overNothing("make by", "NewObject " + backEnd),
        describes("make by class", "FindClass " + backEnd, Injected),
        describes("make by class", "NewObject " + backEnd, Injected),
        describes("make by", "FindClass " + backEnd, NotFound + Injected),
        describes("make by", "NewObject " + backEnd, NotMade + Injected),
    };
}

Rules constructions() {
    const auto lostClass = [](std::size_t number, const std::string& operation) {
        return SweepRule{.operation = "make",
                         .call = "NewGlobalRef",
                         .repetition = number,
                         .text = "made",
                         .keepsFeatureClass = operation != "hasFeature",
                         .broken = {{operation, Incomplete}}};
    };
    // The search for a class goes on, and what went wrong on its way is forgotten once it ends well.
    const auto search = [](const char* call) { return SweepRule{.operation = "make", .call = call, .text = "made"}; };
    return {
        {.operation = "make",
         .call = "GetObjectClass",
         .text = "made",
         .leavesException = true,
         .keepsFeatureClass = false,
         .broken = Everything},
        {.operation = "make", .call = "NewGlobalRef", .repetition = 1, .ending = Ending::BadAlloc, .text = NoMemory},
        // Nothing checks the references to these classes: StorageURI, FolderListEntry, NativePublisher and
        // ExtendedFeature.
        lostClass(2, "*"),
        lostClass(3, "list *"),
        lostClass(4, "start: *"),
        lostClass(5, "hasFeature"),
        search("NewStringUTF"),
        search("CallObjectMethod loadClass"),
        search("CallObjectMethod getClassLoader"),
    };
}

/// Construction that is refused in any case, with the description of the Java error.
Rules refusals(const char* operation, const std::string& error, const std::string& prefix) {
    const auto undescribed = [&](const std::string& call, SweepRule::Way way) {
        return SweepRule{
            .operation = operation, .call = call, .way = way, .ending = Ending::InternalError, .text = prefix};
    };
    return {
        undescribed("GetMethodID " + error + " toString", Either),
        undescribed("CallObjectMethod toString", Either),
        undescribed("GetStringChars", Silently),
        wantOfMemory(operation, "GetStringChars", WithError),
    };
}

Rules missingClass(const char* operation, const std::string& prefix) {
    return joined({refusals(operation, "java/lang/NoClassDefFoundError", prefix),
                   {describes(operation, "FindClass", prefix + Injected), overNothing(operation, "FindClass")}});
}

Rules throwingConstructor(const char* operation, const std::string& findPrefix, const std::string& makePrefix) {
    return joined({refusals(operation, "java/lang/IllegalStateException", makePrefix),
                   {describes(operation, "FindClass", findPrefix + Injected), overNothing(operation, "FindClass"),
                    describes(operation, "NewObject", makePrefix + Injected), overNothing(operation, "NewObject"),
                    overNothing(operation, std::string("GetMethodID ") + ThrowingBackEnd + " <init>")}});
}

}  // namespace

std::vector<SweepRule> makingRules() {
    return joined({instances(), constructions(), missingClass("refuse a class that is missing", ""),
                   missingClass("refuse, in a factory, a class that is missing", NotFound),
                   throwingConstructor("refuse a class whose constructor throws", "", ""),
                   throwingConstructor("refuse, in a factory, a class whose constructor throws", NotFound, NotMade)});
}

}  // namespace storage::javaprovider::test
