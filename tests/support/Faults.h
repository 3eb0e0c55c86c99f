// Platform calls that a test program makes fail. Linking Faults.cpp puts it in front of them.
#pragma once

#include <Carbon/Carbon.h>

struct Faults {
    bool newHandleFails = false;   // NewHandle gives null and memFullErr
    bool tempHandleFails = false;  // TempNewHandle gives null and no error
    bool memErrorIsLost = false;   // MemError reports no error
    // The handle that counts as a resource, and the code that asking about it leaves.
    Handle isResource = nullptr;
    OSErr resourceError = noErr;
    Handle releasedResource = nullptr;  // what ReleaseResource was given
};

extern Faults gFaults;
