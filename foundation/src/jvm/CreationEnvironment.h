#pragma once

#include <vector>

namespace storage::jvm::detail {

/// The environment variables that a starting virtual machine sees, for the life of a scope.
///
/// The machine reads its locale from them, and can name files outside ASCII only under UTF-8: where the host's locale
/// is none, LC_CTYPE says C.UTF-8. JAVA_TOOL_OPTIONS and _JAVA_OPTIONS are hidden, since the machine writes a line to
/// stderr for each before it knows of any hook; EnvironmentOptions hands their contents over instead.
///
/// The host's variables are not touched: `environ` points to another array meanwhile, so other threads may read the
/// environment at any time. Changes that they make one after the other with setenv() and the like are kept.
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
