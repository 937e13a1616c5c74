// What operations ask of the back end, and the arguments they pass.
#include "sweep/SweepRuleParts.h"

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Way;
using Rules = std::vector<SweepRule>;

Rules questions() {
    // The two calls whose exception is neither translated nor cleared.
    const auto unasked = [](const char* operation, const char* call, const char* text) {
        return SweepRule{.operation = operation, .call = call, .text = text, .leavesException = true};
    };
    return {
        unasked("destroy provider", "CallVoidMethod dispose", AsEver),
        unasked("hasFeature", "CallBooleanMethod hasFeature", "false"),
        unasked("hasFeature", "GetStaticObjectField", "false"),
        checked("", "CallBooleanMethod fileExists"),
        checked("", "CallBooleanMethod folderExists"),
        returns("", "CallBooleanMethod fileExists", "false"),
        returns("", "CallBooleanMethod folderExists", "false"),
        checked("", "CallObjectMethod getFileAttributes"),
        checked("", "CallObjectMethod getFolderAttributes"),
        checked("", "CallObjectMethod getExtendedAttributes"),
        checked("", "CallObjectMethod getProviderStorageInfo"),
        checked("", "CallObjectMethod listFolder"),
        checked("", "CallObjectMethod getChannel"),
        checked("", "CallObjectMethod getReadOnlyChannel"),
        checked("", "CallVoidMethod"),
        // A call that was not made reached no back end.
        returns("", "CallVoidMethod", ""),
    };
}

Rules configuration() {
    return {
        wantOfMemory("configure", "FindClass java/util/HashMap"),
        wantOfMemory("configure", "GetMethodID"),
        wantOfMemory("configure", "NewObject java/util/HashMap"),
        checked("configure", "CallObjectMethod put"),
        returns("configure", "CallObjectMethod put", "configure {}"),
        returns("configure", "NewString gds.enableContentCache", "configure {null=true}"),
        returns("configure", "NewString true", "configure {gds.enableContentCache=null}"),
    };
}

/// A location that Java made none of, and gave no reason, is null to the back end; one without text has an empty one.
Rules locations() {
    const std::string lookUp = "GetMethodID com/corvallen/storage/provider/StorageURI <init>";
    const std::string making = "NewObject com/corvallen/storage/provider/StorageURI";
    const auto unknown = [](const char* operation, const std::string& call, std::size_t number) {
        return SweepRule{.operation = operation,
                         .call = call,
                         .way = Silently,
                         .repetition = number,
                         .text = AsEver,
                         .altered = withoutLocation(number, "null")};
    };
    return {
        {.call = lookUp,
         .way = WithError,
         .ending = Ending::InternalError,
         .text = "Method constructor not found.\n" + Injected},
        unknown("", lookUp, 1),
        unknown("move", lookUp, 2),
        wantOfMemory("", making.c_str(), WithError),
        unknown("", making, 1),
        unknown("move", making, 2),
        wantOfMemory("", "NewString", WithError),
        {.operation = "move",
         .call = "NewString java://test/b",
         .way = Silently,
         .text = AsEver,
         .altered = withoutLocation(2, "")},
        {.call = "NewString", .way = Silently, .text = AsEver, .altered = withoutLocation(1, "")},
        wantOfMemory("", "GetStringChars", WithError),
    };
}

}  // namespace

Altered withoutLocation(std::size_t number, const std::string& said) {
    return [number, said](std::string told) {
        const std::string scheme = "java://";
        std::size_t at = told.find(scheme);
        for (std::size_t seen = 1; seen < number && at != std::string::npos; ++seen) {
            at = told.find(scheme, at + 1);
        }
        if (at != std::string::npos) {
            told.replace(at, told.find(' ', at) - at, said);
        }
        return told;
    };
}

std::vector<SweepRule> backEndRules() { return joined({questions(), configuration(), locations()}); }

}  // namespace storage::javaprovider::test
