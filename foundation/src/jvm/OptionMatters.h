#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace storage::jvm::detail {

/// Takes from `defaults` each option that decides something which one of `chosen` decides as well: the collector, the
/// size of the heap, class sharing, the class archive, how code is compiled, the same flag or property. Two of a kind
/// are refused by the machine, or the later would silently win.
///
/// A default for the largest heap also gives way to a smallest one that is larger.
void stepBack(std::vector<std::string>& defaults, const std::vector<std::string>& chosen);

/// Whether the option makes the machine write a class archive and end the process, in place of a start.
[[nodiscard]] bool endsInArchive(std::string_view option);

/// The file of a class archive that the option has used; empty for another option.
[[nodiscard]] std::string_view usedArchive(std::string_view option);

/// The file of a class archive that the option has written; empty for another option.
[[nodiscard]] std::string_view writtenArchive(std::string_view option);

}  // namespace storage::jvm::detail
