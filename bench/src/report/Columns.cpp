#include "report/Columns.h"

#include <algorithm>
#include <array>

namespace bench {

namespace {

constexpr std::array<Columns, 7> WithoutFloor = {{{"pieces", "bare test", "as named"},
                                                  {"attachment", "stays attached", "attached per call"},
                                                  {"threads", "one thread", "two threads"},
                                                  {"log levels", "log off", "log on"},
                                                  {"memory", "size of the result", "rise of the peak"},
                                                  {"start-up", "java", "jstore"},
                                                  {"copies", "cp", "jstore"}}};

}  // namespace

Columns columnsOf(std::string_view group) {
    const auto* const found = std::find_if(WithoutFloor.begin(), WithoutFloor.end(),
                                           [group](const Columns& columns) { return columns.group == group; });
    return found != WithoutFloor.end() ? *found : Columns{group, "floor", "bridge", /*hasBare=*/true};
}

}  // namespace bench
