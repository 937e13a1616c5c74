#pragma once

#include <string>
#include <vector>

namespace storage::jvm::detail {

/// Remembers the process's locale and restores it at the end of the scope: a virtual machine calls
/// setlocale(LC_ALL, "") when it starts.
///
/// The locale belongs to the whole process, so other threads see the machine's until then.
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

/// The environment variables that a starting virtual machine sees, for the life of a scope.
///
/// The machine reads its locale from them, and names files outside ASCII only under UTF-8: where the host's locale is
/// not UTF-8, LC_CTYPE says C.UTF-8. JAVA_TOOL_OPTIONS and _JAVA_OPTIONS are hidden, since the machine writes a line to
/// stderr for each before it uses any hook. machineOptions() passes their contents on instead.
///
/// The host's variables stay as they are: during the scope `environ` points to another array, so other threads may read
/// the environment at any time. Changes that they make one after the other with setenv() and the like are kept.
///
/// One object at a time in a process.
class CreationEnvironment final {
public:
    CreationEnvironment();
    ~CreationEnvironment();

    CreationEnvironment(const CreationEnvironment&) = delete;
    CreationEnvironment& operator=(const CreationEnvironment&) = delete;

private:
    char** m_hosts;
    std::vector<char*> m_hostsVariables;
    std::vector<char*> m_shown;  ///< what m_ours held at first
    std::vector<char*>* m_ours;
};

}  // namespace storage::jvm::detail
