#include "jvm/CreationEnvironment.h"

#include <langinfo.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <deque>
#include <string>
#include <string_view>
#include <utility>

namespace storage::jvm::detail {

namespace {

constexpr std::string_view AllCategories = "LC_ALL";
constexpr std::string_view TextCategory = "LC_CTYPE";
constexpr std::array HiddenVariables{std::string_view("JAVA_TOOL_OPTIONS"), std::string_view("_JAVA_OPTIONS")};

// Not const: the elements of an environment are `char*`.
char utf8AllCategories[] = "LC_ALL=C.UTF-8";
char utf8TextCategory[] = "LC_CTYPE=C.UTF-8";

bool names(const char* entry, std::string_view variable) {
    const std::string_view text = entry;
    return text.starts_with(variable) && text.substr(variable.size()).starts_with('=');
}

/// The variable's value, or null when it is not among them.
const char* find(const std::vector<char*>& variables, std::string_view name) {
    const auto entry = std::ranges::find_if(variables, [name](const char* text) { return names(text, name); });
    return entry == variables.end() ? nullptr : *entry + name.size() + 1;
}

void hide(std::vector<char*>& variables, std::string_view name) {
    std::erase_if(variables, [name](const char* entry) { return names(entry, name); });
}

/// Changes only the category of text, so that Java's language stays the host's. Where LC_ALL is set it beats all other
/// variables, and where a locale is not installed the machine ignores them all: then LC_ALL changes.
void askForUtf8(std::vector<char*>& variables, EnvironmentLocale asked) {
    const char* const all = find(variables, AllCategories);
    const bool textAlone = asked == EnvironmentLocale::OtherCodeset && (all == nullptr || *all == '\0');
    const std::string_view category = textAlone ? TextCategory : AllCategories;
    hide(variables, category);
    variables.push_back(textAlone ? utf8TextCategory : utf8AllCategories);
}

std::vector<char*> variablesOf(char* const* environment) {
    std::vector<char*> variables;
    for (; environment != nullptr && *environment != nullptr; ++environment) {
        variables.push_back(*environment);
    }
    return variables;
}

std::vector<char*> visibleVariables(std::vector<char*> variables) {
    for (const std::string_view name : HiddenVariables) {
        hide(variables, name);
    }
    if (const EnvironmentLocale asked = environmentLocale(); asked != EnvironmentLocale::Utf8) {
        askForUtf8(variables, asked);
    }
    variables.push_back(nullptr);
    return variables;
}

/// Restores one variable in an environment that another thread has changed.
void restore(std::string_view name, const std::vector<char*>& hosts) {
    const std::string variable(name);
    if (const char* const value = find(hosts, name); value != nullptr) {
        setenv(variable.c_str(), value, /*overwrite=*/1);
    } else {
        unsetenv(variable.c_str());
    }
}

/// Keeps an array that is never freed: another thread may still be reading it when the host's array replaces it. Each
/// attempt to start a machine costs some hundred pointers. For one thread at a time.
std::vector<char*>& keepForEver(std::vector<char*> variables) {
    static auto& kept = *new std::deque<std::vector<char*>>;
    return kept.emplace_back(std::move(variables));
}

}  // namespace

HostLocale::HostLocale() : m_name(setlocale(LC_ALL, nullptr)) {}

HostLocale::~HostLocale() { setlocale(LC_ALL, m_name.c_str()); }

EnvironmentLocale environmentLocale() {
    locale_t asked = newlocale(LC_ALL_MASK, "", nullptr);
    if (asked == nullptr) {
        return EnvironmentLocale::Missing;
    }
    const std::string_view codeset = nl_langinfo_l(CODESET, asked);
    const bool utf8 = codeset == "UTF-8";
    freelocale(asked);
    return utf8 ? EnvironmentLocale::Utf8 : EnvironmentLocale::OtherCodeset;
}

CreationEnvironment::CreationEnvironment()
    : m_hosts(environ),
      m_hostsVariables(variablesOf(environ)),
      m_shown(visibleVariables(m_hostsVariables)),
      m_ours(&keepForEver(m_shown)) {
    environ = m_ours->data();
}

CreationEnvironment::~CreationEnvironment() {
    if (environ == m_ours->data() && *m_ours == m_shown) {
        environ = m_hosts;
        return;
    }
    // Another thread has changed a variable, in this array or in one that replaced it. Its change stays.
    for (const std::string_view name : {AllCategories, TextCategory, HiddenVariables[0], HiddenVariables[1]}) {
        restore(name, m_hostsVariables);
    }
}

}  // namespace storage::jvm::detail
