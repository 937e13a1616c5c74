#include "SharedTest.h"

#include <array>

namespace foundation::test {

using namespace storage::provider;

void SharedTest::write(const StorageIRI& file, std::string_view bytes) const {
    const auto stream = provider().openByteStream(file, {.creation = ByteStreamOpenOptions::Creation::CreateIfMissing,
                                                         .content = ByteStreamOpenOptions::Content::Truncate});
    while (!bytes.empty()) {
        const std::streamsize written = stream->write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        ASSERT_GT(written, 0);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    stream->close();
}

std::string SharedTest::bytesOf(const StorageIRI& file) const {
    const auto stream = provider().openReadOnlyByteStream(file);
    std::string bytes;
    std::array<char, 65536> buffer{};
    for (std::streamsize read = 1; read > 0;) {
        read = stream->read(buffer.data(), buffer.size());
        bytes.append(buffer.data(), static_cast<std::size_t>(std::max<std::streamsize>(read, 0)));
    }
    stream->close();
    return bytes;
}

SharedTest::Names SharedTest::names() const {
    Names result;
    for (const auto entries = provider().listAll(folder()); entries->hasMore();) {
        entries->advance();
        result.push_back(entries->getCurrent().name());
    }
    std::ranges::sort(result);
    return result;
}

void SharedTest::expectError(ErrorCode code, const StorageIRI& location, const std::function<void()>& action) {
    try {
        action();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception& error) {
        EXPECT_EQ(toString(error.code()), toString(code)) << error.what();
        EXPECT_EQ(error.location().normalized(), location.normalized());
    }
}

}  // namespace foundation::test
