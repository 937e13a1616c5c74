#pragma once

#include <string>

namespace storage::jvm::detail {

/// Remembers the process's locale and sets it again at the end of the scope: a virtual machine that starts calls
/// setlocale(LC_ALL, "") behind the host's back.
///
/// The locale belongs to the whole process; other threads see the machine's meanwhile.
class HostLocale final {
public:
    HostLocale();
    ~HostLocale();

    HostLocale(const HostLocale&) = delete;
    HostLocale& operator=(const HostLocale&) = delete;

private:
    std::string m_name;
};

/// What setlocale(LC_ALL, "") would do.
enum class EnvironmentLocale {
    Utf8,          ///< set a locale that writes text as UTF-8
    OtherCodeset,  ///< set one that writes it otherwise
    Missing,       ///< fail: a locale that a variable names is not installed
};

/// Looks at the locale that the environment asks for; changes nothing.
[[nodiscard]] EnvironmentLocale environmentLocale();

}  // namespace storage::jvm::detail
