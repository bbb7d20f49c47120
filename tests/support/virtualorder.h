// The index of a virtual function in its class's vtable, for tests of declaration orders.
#pragma once

#include <cstddef>
#include <cstring>

namespace tarnis::testing {

/// Index of a virtual member function, by the Itanium C++ ABI (section 2.3): the first word of the member pointer is
/// the function's offset in the table, plus one. -1 for a function that is not virtual.
template <typename Member> std::ptrdiff_t virtualIndex(Member member)
{
    std::ptrdiff_t word = 0;
    std::memcpy(&word, &member, sizeof word);
    return word % 2 == 1 ? word / std::ptrdiff_t(sizeof(void*)) : -1;
}

} // namespace tarnis::testing
