// Looks for an application in a desktop file's list; the first four bytes are the creator sought.
#include <cstdint>
#include <cstdlib>

#include "vantor/files/ApplicationList.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inData, size_t inSize) {
    UInt32 creator;
    if (inSize < sizeof creator) return 0;
    std::memcpy(&creator, inData, sizeof creator);
    Handle list = nullptr;
    const Size size = static_cast<Size>(inSize - sizeof creator);
    if (PtrToHand(inData + sizeof creator, &list, size) != noErr) return 0;
    SInt32 parID = 0;
    Str255 name;
    if (ApplicationList(list).Find(NativeFromBigEndian(creator), &parID, name)) {
        // What is found stands in the list.
        const size_t length = size_t{name[0]} + 1;
        if (memmem(*list, static_cast<size_t>(size), name, length) == nullptr) std::abort();
    }
    DisposeHandle(list);
    return 0;
}
