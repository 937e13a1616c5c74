#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Looks into virtual tables. In the Itanium C++ ABI a pointer to a virtual member function holds 1 plus the byte
/// offset of its entry; a virtual destructor takes two entries, the second of which also frees the object.
namespace foundation::test {

/// The number of the entry that a virtual member function has in its table.
template <class Member>
std::size_t entryOf(Member member) {
    std::uintptr_t word = 0;
    std::memcpy(&word, &member, sizeof word);
    EXPECT_EQ(word % 2, 1U) << "not a virtual function";
    return (word - 1) / sizeof(void*);
}

/// The slot's number where the destructor, slot 0, comes first.
template <class Member>
std::size_t slotOf(Member member) {
    return entryOf(member) - 1;
}

/// Entry `index` of an object's virtual table, as a function of the given type.
template <class Function>
Function* entryAt(const void* object, std::size_t index) {
    const void* const* table = nullptr;
    std::memcpy(&table, object, sizeof table);
    return reinterpret_cast<Function*>(reinterpret_cast<std::uintptr_t>(table[index]));
}

}  // namespace foundation::test
