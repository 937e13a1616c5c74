#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace bench {

/// Something to measure: once, and over and over inside the loop of a benchmark.
struct Operation {
    std::function<void()> once;
    std::function<void(benchmark::State&)> loop;
};

/// An operation of the action; what it answers counts as used.
template <class Action>
[[nodiscard]] Operation operation(Action action) {
    const auto call = [action = std::move(action)] {
        if constexpr (std::is_void_v<std::invoke_result_t<const Action&>>) {
            action();
        } else {
            benchmark::DoNotOptimize(action());
        }
    };
    return {call, [call](benchmark::State& state) {
                for (auto step : state) {
                    call();
                }
            }};
}

/// An operation of the library beside its floor.
struct Pair {
    std::string name;
    std::string group;
    std::optional<double> target;  ///< what the ratio may be at most
    std::int64_t units;  ///< how many entries, attributes or events one call handles; the figures are per unit
    Operation floor;
    Operation bridge;
    std::optional<Operation> bare{};  ///< the floor that keeps everything it needs
};

}  // namespace bench
