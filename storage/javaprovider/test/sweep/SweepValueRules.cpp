// The values that the back end answers with.
#include <algorithm>
#include <array>
#include <utility>

#include "sweep/SweepRuleParts.h"

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Way;
using Rules = std::vector<SweepRule>;

// Nothing is asked after a getter: the contract's values throw from none. What one gives counts, and an exception stays
// where it is.
SweepRule getter(const std::string& operation, const std::string& call, const std::string& text,
                 std::size_t repetition = 0) {
    return {.operation = operation, .call = call, .repetition = repetition, .text = text, .leavesException = true};
}

/// The machine gives no class for the value: no getter is found.
SweepRule noClass(const char* operation, std::size_t repetition, const std::string& getter) {
    return {.operation = operation,
            .call = "GetObjectClass",
            .way = WithError,
            .repetition = repetition,
            .ending = Ending::InternalError,
            .text = "Method " + getter + " not found.\n" + Injected};
}

Rules attributes() {
    return {
        getter("file attributes", "CallBooleanMethod isWritable", "7 false 1000"),
        getter("file attributes", "CallLongMethod getLastModified", "7 true 0"),
        getter("file attributes", "CallLongMethod getSize", "0 true 1000"),
        noClass("file attributes", 1, "isWritable with signature ()Z"),
        noClass("file attributes", 2, "getLastModified with signature ()J"),
        noClass("file attributes", 3, "getSize with signature ()J"),
        getter("folder attributes", "CallBooleanMethod isWritable", "false 1000"),
        getter("folder attributes", "CallLongMethod getLastModified", "true 0"),
        noClass("folder attributes", 1, "isWritable with signature ()Z"),
        noClass("folder attributes", 2, "getLastModified with signature ()J"),
        getter("storage info", "CallLongMethod getStorageCapacity", "0 3"),
        getter("storage info", "CallLongMethod getSpaceOccupied", "10 0"),
        noClass("storage info", 0, "getStorageCapacity with signature ()J"),
    };
}

/// Name and value of an extended attribute are the exception among getters: they are asked after.
Rules extendedAttributes() {
    const char* const operation = "extended attributes";
    const auto silent = [operation](const char* call, std::size_t repetition, const char* text) {
        return SweepRule{.operation = operation, .call = call, .way = Silently, .repetition = repetition, .text = text};
    };
    return {
        checked(operation, "CallObjectMethod getName"),
        checked(operation, "CallObjectMethod getValue"),
        silent("CallObjectMethod getName", 1, "=v m=w "),
        silent("CallObjectMethod getValue", 1, "m=w n= "),
        silent("CallObjectMethod getName", 2, "=w n=v "),
        silent("CallObjectMethod getValue", 2, "m= n=v "),
        silent("GetStringChars", 1, "=v m=w "),
        silent("GetStringChars", 2, "m=w n= "),
        silent("GetStringChars", 3, "=w n=v "),
        silent("GetStringChars", 4, "m= n=v "),
        getter(operation, "GetArrayLength", ""),
        noClass(operation, 0, "getAllAttributes with signature ()[Lcom/corvallen/storage/provider/ExtendedAttribute;"),
    };
}

/// A child in the listing: its name, and whether it is a folder.
using Child = std::pair<std::string, bool>;
using Children = std::vector<Child>;

const Children Listed = {{"a", false}, {"B", true}, {"c", false}};

std::string shown(const std::string& operation, const Children& children) {
    std::string text;
    for (const auto& [name, folder] : children) {
        if (operation == "list all" || (operation == "list folders") == folder) {
            text += name + (folder ? "/ " : " ");
        }
    }
    return text;
}

/// One child is read badly, the others well.
Rules listing(const std::string& operation, std::size_t index) {
    const std::size_t repetition = index + 1;
    Children nameless = Listed;
    nameless[index].first.clear();
    Children flat = Listed;
    flat[index].second = false;
    Children shorter = Listed;
    shorter.erase(shorter.begin() + static_cast<std::ptrdiff_t>(index));
    return {
        getter(operation, "CallObjectMethod getName", shown(operation, nameless), repetition),
        getter(operation, "CallBooleanMethod isFolder", shown(operation, flat), repetition),
        getter(operation, "IsInstanceOf", shown(operation, shorter), repetition),
        {.operation = operation,
         .call = "GetStringChars",
         .way = Silently,
         .repetition = repetition,
         .text = shown(operation, nameless)},
    };
}

}  // namespace

std::vector<SweepRule> valueRules() { return joined({attributes(), extendedAttributes()}); }

std::vector<SweepRule> listingRules() {
    Rules rules = {getter("list", "GetArrayLength", "")};
    for (const char* operation : {"list all", "list files", "list folders"}) {
        for (std::size_t index = 0; index < Listed.size(); ++index) {
            rules = joined({rules, listing(operation, index)});
        }
    }
    return rules;
}

}  // namespace storage::javaprovider::test
