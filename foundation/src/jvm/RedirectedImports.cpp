#include "jvm/RedirectedImports.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace storage::jvm::detail {

namespace {

#if __ELF_NATIVE_CLASS == 64
using Relocation = ElfW(Rela);
constexpr ElfW(Sxword) RelocationKind = DT_RELA;
std::size_t symbolOf(const Relocation& relocation) { return ELF64_R_SYM(relocation.r_info); }
#else
using Relocation = ElfW(Rel);
constexpr ElfW(Sword) RelocationKind = DT_REL;
std::size_t symbolOf(const Relocation& relocation) { return ELF32_R_SYM(relocation.r_info); }
#endif

/// The linker's table of a library's imported functions.
struct ImportTable {
    const Relocation* begin = nullptr;
    std::size_t bytes = 0;
    const ElfW(Sym) * symbols = nullptr;
    const char* names = nullptr;
    ElfW(Sxword) kind = 0;

    [[nodiscard]] std::span<const Relocation> entries() const {
        const bool known = kind == RelocationKind && begin != nullptr && symbols != nullptr && names != nullptr;
        return {begin, known ? bytes / sizeof(Relocation) : 0};
    }
};

/// What lies at an address; the linker's tables hold addresses as numbers.
template <class T>
T* at(ElfW(Addr) address) {
    return reinterpret_cast<T*>(address);  // NOLINT(performance-no-int-to-ptr)
}

link_map* libraryOf(const void* inside) {
    Dl_info info{};
    void* library = nullptr;
    return dladdr1(inside, &info, &library, RTLD_DL_LINKMAP) == 0 ? nullptr : static_cast<link_map*>(library);
}

ImportTable importTableOf(const link_map& library) {
    ImportTable table;
    for (const ElfW(Dyn)* entry = library.l_ld; entry->d_tag != DT_NULL; ++entry) {
        // The linker has made addresses of these already, unless the system keeps this list from being written.
        const ElfW(Addr) value = entry->d_un.d_ptr;
        const ElfW(Addr) address = value < library.l_addr ? library.l_addr + value : value;
        if (entry->d_tag == DT_JMPREL) {
            table.begin = at<const Relocation>(address);
        } else if (entry->d_tag == DT_PLTRELSZ) {
            table.bytes = entry->d_un.d_val;
        } else if (entry->d_tag == DT_PLTREL) {
            table.kind = static_cast<ElfW(Sxword)>(entry->d_un.d_val);
        } else if (entry->d_tag == DT_SYMTAB) {
            table.symbols = at<const ElfW(Sym)>(address);
        } else if (entry->d_tag == DT_STRTAB) {
            table.names = at<const char>(address);
        }
    }
    return table;
}

/// The memory that the linker protects after it has filled a library's tables; empty when it protects nothing.
std::span<std::byte> protectedPart(const link_map& library) {
    struct Search {
        ElfW(Addr) base;
        std::span<std::byte> found;
    } search{library.l_addr, {}};
    const auto look = [](dl_phdr_info* each, std::size_t, void* data) {
        auto& wanted = *static_cast<Search*>(data);
        for (int i = 0; each->dlpi_addr == wanted.base && i < each->dlpi_phnum; ++i) {
            const auto& part = each->dlpi_phdr[i];
            if (part.p_type == PT_GNU_RELRO) {
                const auto page = static_cast<ElfW(Addr)>(sysconf(_SC_PAGESIZE));
                const ElfW(Addr) begin = (wanted.base + part.p_vaddr) & ~(page - 1);
                const ElfW(Addr) end = (wanted.base + part.p_vaddr + part.p_memsz) & ~(page - 1);
                wanted.found = {at<std::byte>(begin), end - begin};
            }
        }
        return 0;
    };
    dl_iterate_phdr(look, &search);
    return search.found;
}

}  // namespace

RedirectedImports::RedirectedImports(const void* inside, std::span<const Import> imports) {
    const link_map* const library = libraryOf(inside);
    if (library == nullptr) {
        return;
    }
    const std::span<std::byte> kept = protectedPart(*library);
    m_protected = kept.data();
    m_length = kept.size();
    const ImportTable table = importTableOf(*library);
    m_before.reserve(table.entries().size());  // nothing may throw while the table is half changed
    if (!makeWritable(true)) {
        return;
    }
    for (const Relocation& entry : table.entries()) {
        const std::string_view name = table.names + table.symbols[symbolOf(entry)].st_name;
        const auto import = std::ranges::find(imports, name, &Import::name);
        if (import != imports.end()) {
            auto** const place = at<void*>(library->l_addr + entry.r_offset);
            m_before.emplace_back(place, *place);
            *place = import->replacement;
        }
    }
    static_cast<void>(makeWritable(false));
}

RedirectedImports::~RedirectedImports() {
    if (m_before.empty() || !makeWritable(true)) {
        return;
    }
    for (const auto& [place, before] : m_before) {
        *place = before;
    }
    static_cast<void>(makeWritable(false));
}

bool RedirectedImports::makeWritable(bool writable) const {
    return m_length == 0 || mprotect(m_protected, m_length, writable ? PROT_READ | PROT_WRITE : PROT_READ) == 0;
}

}  // namespace storage::jvm::detail
