#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "floor/FloorGuard.h"

namespace bench {

/// One open file of the back end. Used on one thread.
class FloorStream {
public:
    /// Asks the channel's class for its six methods, and keeps the channel with a reference of its own.
    FloorStream(const FloorJava& java, jobject channel);
    ~FloorStream();

    FloorStream(const FloorStream&) = delete;
    FloorStream& operator=(const FloorStream&) = delete;

    [[nodiscard]] std::int64_t read(char* destination, std::int64_t count) const;
    [[nodiscard]] std::int64_t write(const char* source, std::int64_t count) const;
    void close() const;

private:
    enum Method : std::size_t { Read, Write, GetPosition, SetPosition, Size, Close, MethodCount };
    static const FloorMethods<MethodCount>::Names Names;

    [[nodiscard]] std::int64_t transfer(Method method, void* memory, std::int64_t count) const;

    const FloorJava& m_java;
    jobject m_channel;
    FloorMethods<MethodCount> m_methods;
};

/// Opens a file of the back end for reading.
[[nodiscard]] std::unique_ptr<FloorStream> openReadOnly(const FloorJava& java, std::u16string_view location);

}  // namespace bench
