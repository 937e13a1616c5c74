// Jars as the class path names them: any bytes. A sound one stays so with a program before it.
#include <sys/mman.h>
#include <unistd.h>

#include <exception>
#include <string>

#include "Input.h"
#include "Require.h"
#include "java/JarFile.h"

using fuzz::require;

namespace {

/// A file without a name, for the life of a scope.
class File {
public:
    explicit File(fuzz::Bytes bytes) : m_descriptor(::memfd_create("jar", MFD_CLOEXEC)) {
        require(m_descriptor >= 0 &&
                    ::write(m_descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
                "there is memory for a file");
    }
    ~File() { ::close(m_descriptor); }

    File(const File&) = delete;
    File& operator=(const File&) = delete;

    [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    int m_descriptor;
};

/// Why it is no jar; empty for one.
std::string problemOfBytes(fuzz::Bytes bytes) {
    const File file(bytes);
    try {
        static_cast<void>(jstore::JarFile(file.path()).contains("a/B.class"));
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = fuzz::bytesOf(data, size);
    const auto problem = problemOfBytes(bytes);
    require(problem.empty() || problem == "not a zip archive" || problem.starts_with("damaged: "),
            "bytes are a jar, damaged, or no archive", problem);
    const std::string before = "#!/bin/sh\nexec java -jar \"$0\"\n";
    // A second record is where the locator says it is, so nothing can stand before such an archive.
    const bool plain = bytes.find("PK\6\6") == fuzz::Bytes::npos;
    require(!problem.empty() || !plain || problemOfBytes(before + std::string(bytes)).empty(),
            "a program may stand before a jar");
    return 0;
}
