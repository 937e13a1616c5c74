#pragma once

#include <cstdint>
#include <string_view>

#include "floor/FloorJava.h"

namespace bench {

/// One open file of the back end, and how it comes to be. Used on one thread.
class FloorStream {
public:
    /// Asks the back end for the file, looks the channel's six methods up, and keeps the channel.
    FloorStream(const FloorJava& java, jmethodID getReadOnlyChannel, std::u16string_view location);
    ~FloorStream();

    FloorStream(const FloorStream&) = delete;
    FloorStream& operator=(const FloorStream&) = delete;

    [[nodiscard]] std::int64_t read(char* destination, std::int64_t count) const;
    [[nodiscard]] std::int64_t write(const char* source, std::int64_t count) const;
    void close() const;

private:
    [[nodiscard]] std::int64_t transfer(jmethodID method, void* memory, std::int64_t count) const;

    const FloorJava& m_java;
    jobject m_channel;
    jmethodID m_read;
    jmethodID m_write;
    jmethodID m_getPosition;
    jmethodID m_setPosition;
    jmethodID m_size;
    jmethodID m_close;
};

/// The back end's method that opens a file for reading.
[[nodiscard]] jmethodID readOnlyChannelMethod(const FloorJava& java);

}  // namespace bench
