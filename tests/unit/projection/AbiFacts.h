#pragma once
#include <unknwn.h> // first: the projection then speaks classic COM, too
#include <winrt/base.h>

#include <cstring>
#include <gtest/gtest.h>

namespace test
{

// A pointer to a virtual method of this C++ ABI is two words, of which the first is one more than the offset of the
// method's slot in bytes.
template <typename Member>
uintptr_t SlotOf(Member member)
{
    static_assert(sizeof member == 2 * sizeof(uintptr_t));
    uintptr_t words[2];
    std::memcpy(words, &member, sizeof words);
    return (words[0] - 1) / sizeof(void*);
}

// The slot that a method added to the interface would get.
template <typename Abi>
uintptr_t SlotCount()
{
    struct Longer : Abi
    {
        virtual void __stdcall AfterAllOthers() noexcept = 0;
    };
    return SlotOf(&Longer::AfterAllOthers);
}

} // namespace test
