#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace storage::jvm::detail {

/// Removes from `defaults` each option that decides the same as one of `chosen`: the collector, the size of the heap,
/// class sharing, the class archive, how code is compiled, the same flag or property. The machine would refuse two of a
/// kind, or the later would silently win.
///
/// A default for the largest heap is removed too if one of `chosen` asks for a smallest heap that is larger.
void stepBack(std::vector<std::string>& defaults, const std::vector<std::string>& chosen);

/// Whether the option makes the machine write a class archive and end the process instead of starting.
[[nodiscard]] bool endsInArchive(std::string_view option);

/// The file of the class archive that the option makes the machine use; empty for another option.
[[nodiscard]] std::string_view usedArchive(std::string_view option);

/// The file of the class archive that the option makes the machine write; empty for another option.
[[nodiscard]] std::string_view writtenArchive(std::string_view option);

}  // namespace storage::jvm::detail
