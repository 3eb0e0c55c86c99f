// Preconditions of the MoreAE and MoreProc families: a failed one is shown in the debugger, then
// the function goes on and deals with the bad value itself.
#pragma once

#include <Carbon/Carbon.h>

#include <cstddef>

// A literal as a Pascal string, made when the program is compiled.
template <std::size_t Size>
struct PascalLiteral {
    consteval PascalLiteral(const char (&inText)[Size]) {
        static_assert(Size <= 256, "a Pascal string holds 255 characters");
        mBytes[0] = static_cast<unsigned char>(Size - 1);
        for (std::size_t i = 0; i + 1 < Size; ++i) {
            mBytes[i + 1] = static_cast<unsigned char>(inText[i]);
        }
    }
    unsigned char mBytes[Size] = {};
};

#define MoreAssertAs(name, condition, text)                              \
    do {                                                                 \
        static constexpr PascalLiteral sFailure(name " failure: " text); \
        if (!(condition)) DebugStr(sFailure.mBytes);                     \
    } while (false)

#define MoreAssertQ(condition) MoreAssertAs("MoreAssertQ", condition, #condition)
#define MoreAssert(condition) MoreAssertAs("MoreAssert", condition, #condition)
