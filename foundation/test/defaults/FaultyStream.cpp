#include "FaultyStream.h"

#include <algorithm>
#include <utility>

namespace foundation::test {

FaultyStream::FaultyStream(std::unique_ptr<storage::provider::ByteStream> stream,
                           storage::provider::StorageIRI location, FaultPlan& plan, StreamHabits& habits)
    : m_stream(std::move(stream)), m_location(std::move(location)), m_plan(plan), m_habits(habits) {
    ++m_habits.open;
}

bool FaultyStream::idles() {
    m_idled = m_idled < m_habits.idleCalls ? m_idled + 1 : 0;
    return m_idled > 0;
}

std::streamsize FaultyStream::read(char* destination, std::streamsize count) {
    (void)m_plan.begin("read", m_location);
    return idles() ? 0 : m_stream->read(destination, std::min(count, m_habits.mostAtOnce));
}

std::streamsize FaultyStream::write(const char* source, std::streamsize count) {
    try {
        (void)m_plan.begin("write", m_location);
    } catch (...) {
        (void)m_stream->write(source, count / 2);
        throw;
    }
    return idles() ? 0 : m_stream->write(source, std::min(count, m_habits.mostAtOnce)) + m_habits.boast;
}

std::streampos FaultyStream::seek(std::streamoff offset, std::ios_base::seekdir way) {
    (void)m_plan.begin("seek", m_location);
    return m_stream->seek(offset, way);
}

void FaultyStream::close() {
    m_stream->close();
    --m_habits.open;
    if (m_plan.begin("close", m_location)) {
        m_plan.fail(m_location);
    }
}

}  // namespace foundation::test
