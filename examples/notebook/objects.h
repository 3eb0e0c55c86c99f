// How an object specifier becomes notes and properties, and how a note becomes a specifier.
#pragma once

#include <Carbon/Carbon.h>

#include <new>
#include <vector>

#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/foundation/LException.h"

namespace notebook {

// The application, a note, or a property of one of them.
struct Object {
    SInt32 note = 0;        // its ID; 0: the application
    DescType property = 0;  // 0: the object itself
};

// A position "all" and a test mean many objects, also when they find only one.
struct Objects {
    std::vector<Object> each;
    bool areMany = false;
};

void InstallObjectAccessors();  // once, before any event

// The null descriptor is the application. Throws errAENoSuchObject and the codes of AEResolve.
Objects Resolve(const AEDesc& inSpecifier);

void GetValue(const Object& inObject, StAEDescriptor& outValue);  // of an object, a specifier
DescType CodeFrom(const AEDesc& inType);

// The platform is C: what is thrown in one of its callbacks leaves it as a result code.
template <typename Work>
OSErr CodeOf(Work inWork) {
    try {
        inWork();
        return noErr;
    } catch (const LException& exception) {
        return OSErr(exception.GetErrorCode());
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
}

}  // namespace notebook
