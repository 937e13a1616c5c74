#pragma once

#include <jni.h>

#include <array>
#include <cstddef>
#include <map>
#include <string>

namespace bench {

/// How a floor finds what it needs on each call.
enum class Lookups {
    PerCall,  ///< searches for it, as the library's rules want: the environment, names as strings, an ordered map
    Kept,     ///< keeps it, as a program for one thread and one back end could
};

/// Method IDs under their names: searched for in an ordered map of strings, or kept.
template <std::size_t Count>
class FloorMethods {
public:
    using Names = std::array<const char*, Count>;

    /// `names` outlives the table.
    FloorMethods(Lookups lookups, const Names& names) : m_lookups(lookups), m_names(names), m_kept{} {}

    void set(std::size_t index, jmethodID method) {
        if (m_lookups == Lookups::PerCall) {
            m_byName[m_names[index]] = method;
        } else {
            m_kept[index] = method;
        }
    }

    [[nodiscard]] jmethodID get(std::size_t index) const {
        return m_lookups == Lookups::PerCall ? m_byName.find(std::string(m_names[index]))->second : m_kept[index];
    }

private:
    Lookups m_lookups;
    const Names& m_names;
    std::map<std::string, jmethodID> m_byName;
    std::array<jmethodID, Count> m_kept;
};

}  // namespace bench
