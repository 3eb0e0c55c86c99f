// What the tests of the memory manager share.
#pragma once

#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <gtest/gtest.h>

#include <string>

inline std::string TextOf(Handle inHandle) {
    return {*inHandle, size_t(GetHandleSize(inHandle))};
}

inline Handle FromText(const std::string& inText) {
    Handle handle = nullptr;
    EXPECT_EQ(PtrToHand(inText.data(), &handle, Size(inText.size())), noErr);
    return handle;
}

// A handle that is live no longer.
inline Handle Disposed() {
    const Handle handle = NewHandle(4);
    DisposeHandle(handle);
    return handle;
}
