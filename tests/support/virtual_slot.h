// Where a virtual operation stands in its class's table, counted from 0: plug-ins are linked by that number.
// Read from the pointer to member as the Itanium C++ ABI lays it out (1 + byte offset into the table). A virtual
// destructor takes two slots, complete and deleting.
//
//   EXPECT_EQ(kvTest::VirtualSlot(&Listener::PresetModified), 1);
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kvTest {

template <class Member>
std::ptrdiff_t VirtualSlot(Member member) {
    std::ptrdiff_t words[2];
    static_assert(sizeof member == sizeof words);
    std::memcpy(words, &member, sizeof words);
    return (words[0] & 1) != 0 ? words[0] / static_cast<std::ptrdiff_t>(sizeof(void*)) : -1;
}

} // namespace kvTest
