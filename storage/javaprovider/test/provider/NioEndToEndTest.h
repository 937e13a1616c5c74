#pragma once

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include "fl/i18n/text.h"
#include "foundation/storage/provider/IProvider.h"
#include "provider/ThrownErrors.h"
#include "storage/javaprovider/EntryPoints.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

namespace fs = std::filesystem;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::StorageIRI;

/// A new folder below the system's folder for temporary files, removed with all it holds at the end.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (fs::temp_directory_path() / "javaprovider-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("cannot make " + pattern);
        }
        m_path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;  // what is left behind is in the folder for temporary files
        fs::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const fs::path& path() const noexcept { return m_path; }

private:
    fs::path m_path;
};

/// A file's bytes.
[[nodiscard]] inline std::string contentOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A provider over the default file system, and a folder in it.
class NioEndToEndTest : public RecordedJvmTest {
protected:
    void SetUp() override {
        RecordedJvmTest::SetUp();
        provider.reset(buildProvider(jvm(), "com/corvallen/storage/backend/nio/NioProvider"));
        recorder.keepCalls(false);
    }

    /// The location of a path below the temporary folder.
    [[nodiscard]] StorageIRI at(const std::string& name) const {
        const StorageIRI parent(u"java://" + fl::i18n::to_ustring(folder.path().string()));
        return parent.getChild(fl::i18n::to_ustring(name));
    }
    [[nodiscard]] StorageIRI at(const std::string& parent, const std::string& name) const {
        return at(parent).getChild(fl::i18n::to_ustring(name));
    }
    [[nodiscard]] fs::path file(const std::string& name, const std::string& content = "content") const {
        std::ofstream(folder.path() / name, std::ios::binary) << content;
        return folder.path() / name;
    }
    [[nodiscard]] fs::path subfolder(const std::string& name) const {
        fs::create_directories(folder.path() / name);
        return folder.path() / name;
    }
    /// The action fails with that code, about that location.
    void expectError(ErrorCode code, const StorageIRI& about, const std::function<void()>& action) const {
        const auto error = thrownBy<ProviderError>(action);
        ASSERT_TRUE(error);
        EXPECT_EQ(toString(error->code()), toString(code));
        EXPECT_EQ(error->location().normalized(), about.normalized());
    }

    const TemporaryFolder folder;
    std::unique_ptr<IProvider> provider;
};

}  // namespace storage::javaprovider::test
