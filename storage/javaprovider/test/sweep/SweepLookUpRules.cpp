// Guards, and look-ups of methods and classes, wherever they are.
#include "sweep/SweepNames.h"
#include "sweep/SweepRuleParts.h"

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Way;
using Rules = std::vector<SweepRule>;

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
        wantOfMemory("", "PushLocalFrame"),
    };
}

/// A method of the contract that Java lacks without saying so: what needs it fails.
Rules contractMethods() {
    struct Row {
        const char* method;
        const char* operation;
    };
    constexpr Row Needed[] = {
        {"fileExists", "fileExists"},
        {"folderExists", "folderExists"},
        {"createFile", "createFile"},
        {"createFolder", "createFolder"},
        {"removeFile", "removeFile"},
        {"removeFolder", "removeFolder"},
        {"removeFolderRecursively", "removeFolderRecursive"},
        {"hasFeature", "hasFeature"},
        {"moveFile", "moveFile"},
        {"moveFolder", "moveFolder"},
        {"getFileAttributes", "file attributes"},
        {"getFolderAttributes", "folder attributes"},
        {"setLastModified", "setLastModified"},
        {"listFolder", "list *"},
        {"getChannel", "open stream"},
        {"getReadOnlyChannel", "open read-only stream"},
        {"publishEventsFor", "start: *"},
        {"stopPublishingEventsFor", "stop"},
        {"getExtendedAttributes", "extended attributes"},
        {"getProviderStorageInfo", "storage info"},
        {"configure", "configure"},
    };
    const std::string lookUp = std::string("GetMethodID ") + SweptBackEnd + " ";
    Rules rules;
    for (const auto& [method, operation] : Needed) {
        rules.push_back({.operation = "make",
                         .call = lookUp + method,
                         .way = Silently,
                         .text = "made",
                         .broken = {{operation, std::string("Method ") + method + " not found."}}});
    }
    // The destructor meets the error, which ends its way into Java.
    rules.push_back({.operation = "make",
                     .call = lookUp + "dispose",
                     .way = Silently,
                     .text = "made",
                     .lost = SweepRule::Lost::ThoseOfProvider});
    return rules;
}

Rules methods() {
    return {
        {.call = "GetMethodID", .way = WithError, .ending = Ending::InternalError, .text = MethodNotFound + Injected}};
}

/// A class that is not found has no methods.
Rules classes() {
    const auto lacking = [](const std::string& name, std::size_t repetition, const std::string& method) {
        return SweepRule{.call = "FindClass " + name,
                         .way = WithError,
                         .repetition = repetition,
                         .ending = Ending::InternalError,
                         .text = "Method " + method + " not found.\n" + Injected};
    };
    Rules rules = {
        lacking("java/lang/Class", 0, "getClassLoader with signature ()Ljava/lang/ClassLoader;"),
        lacking("com/corvallen/storage/provider/ExtendedAttribute", 0, "getName with signature ()Ljava/lang/String;"),
    };
    // Found twice for each class that is searched, of which construction searches four.
    for (std::size_t search = 0; search < 4; ++search) {
        rules.push_back(lacking("java/lang/ClassLoader", 2 * search + 1,
                                "loadClass with signature (Ljava/lang/String;)Ljava/lang/Class;"));
        rules.push_back(
            lacking("java/lang/ClassLoader", 2 * search + 2, "getParent with signature ()Ljava/lang/ClassLoader;"));
    }
    return rules;
}

}  // namespace

std::vector<SweepRule> lookUpRules() { return joined({guards(), contractMethods(), classes(), methods()}); }

}  // namespace storage::javaprovider::test
