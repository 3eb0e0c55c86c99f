// An object of the recorder, and the two descriptors that can stand for it: a token while a
// specifier is resolved, and a specifier for others.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "vantor/appleevents/StAEDescriptor.h"

namespace recorder {

enum : DescType { kDiscClass = 'Disc', kDriveClass = 'Driv' };

// The application, its disc, one of its drives, or a property of one of these.
struct Object {
    DescType objectClass = cApplication;
    std::string driveId;
    DescType property = 0;  // 0: the object itself
};

// The application's token is the null descriptor.
void MakeToken(const Object& inObject, StAEDescriptor& outToken);
// Throws errAETypeError for what is no token.
Object ObjectFrom(const AEDesc& inToken);

// For an object itself, not for a property: a drive is specified by its identifier.
void MakeSpecifier(const Object& inObject, StAEDescriptor& outSpecifier);

}  // namespace recorder
