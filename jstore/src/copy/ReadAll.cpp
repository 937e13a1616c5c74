#include "copy/ReadAll.h"

#include <memory>

#include "process/Interrupt.h"

namespace jstore {

namespace {

constexpr std::streamsize PortionBytes = std::streamsize{128} * 1024;

}  // namespace

std::uint64_t readAll(foundation::storage::provider::StreamEnd from,
                      const std::function<void(std::string_view)>& take) {
    // Not cleared: of a small file only the first page is ever touched.
    const auto buffer = std::make_unique_for_overwrite<char[]>(PortionBytes);
    std::uint64_t total = 0;
    while (true) {
        stopIfInterrupted();
        const std::streamsize count = readSome(from, buffer.get(), PortionBytes);
        if (count == 0) {
            return total;
        }
        take({buffer.get(), static_cast<std::size_t>(count)});
        total += static_cast<std::uint64_t>(count);
    }
}

}  // namespace jstore
