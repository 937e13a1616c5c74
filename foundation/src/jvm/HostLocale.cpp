#include "jvm/HostLocale.h"

#include <langinfo.h>
#include <locale.h>

#include <string_view>

namespace storage::jvm::detail {

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

}  // namespace storage::jvm::detail
