#include "base/MemoryError.h"

#include <algorithm>
#include <array>
#include <new>

#include "base/Text.h"

namespace jstore {

namespace {

constexpr std::string_view JavaError = "java.lang.OutOfMemoryError";
constexpr const char* HeapHint = "Java is out of memory; --jvm-option -Xmx1g gives it more";

/// Words in Java's message when memory other than the heap is full.
constexpr std::array OtherKinds{std::string_view("native thread"), std::string_view("Metaspace"),
                                std::string_view("class space"), std::string_view("irect buffer"),
                                std::string_view("direct memory")};

}  // namespace

std::optional<std::string> memoryHint(std::string_view javaText) {
    const std::size_t begin = javaText.find(JavaError);
    if (begin == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view words = javaText.substr(begin);
    const auto isNamed = [words](std::string_view kind) { return words.find(kind) != std::string_view::npos; };
    if (std::any_of(OtherKinds.begin(), OtherKinds.end(), isNamed)) {
        return "Java is out of memory: " + oneLine(words.substr(JavaError.size() + 2));
    }
    return HeapHint;
}

std::optional<std::string> memoryHint(const std::exception& error) {
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
        return HeapHint;
    }
    return memoryHint(std::string_view(error.what()));
}

}  // namespace jstore
