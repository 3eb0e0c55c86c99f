// Object specifiers and key descriptors for callers that want result codes. Usable from C.
//
// A null descriptor as container means the application itself. Containers stay the caller's unless
// `pDisposeInputs` is true; the results are the caller's to dispose. Nothing here throws.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// A property of a container.
VANTOR_EXPORT OSErr MoreAEOCreatePropertyObject(DescType pPropertyType, AEDesc* pContainer,
                                                AEDesc* pObjSpecifier);

// A process, as a property whose key is the serial number.
VANTOR_EXPORT OSErr MoreAEOCreateProcessObject(const ProcessSerialNumber* pPSN, AEDesc* pContainer,
                                               AEDesc* pObjSpecifier);

// The elements that an absolute ordinal (kAEFirst, kAEAll, ...) selects.
VANTOR_EXPORT OSErr MoreAEOCreateSelectionObject(DescType pSelection, AEDesc* pContainer,
                                                 AEDesc* pObjSpecifier);

// An element by unique ID, by position (1 is the first, -1 the last) or by name.
VANTOR_EXPORT OSErr MoreAEOCreateObjSpecifierFormUniqueID(DescType pDesiredClass,
                                                          const AEDesc* pContainer,
                                                          SInt32 pUniqueID, Boolean pDisposeInputs,
                                                          AEDesc* pObjSpecifier);
VANTOR_EXPORT OSErr MoreAEOCreateObjSpecifierFormAbsPos(DescType pDesiredClass,
                                                        const AEDesc* pContainer,
                                                        SInt32 pAbsolutePosition,
                                                        Boolean pDisposeInputs,
                                                        AEDesc* pObjSpecifier);
VANTOR_EXPORT OSErr MoreAEOCreateObjSpecifierFormName(DescType pDesiredClass,
                                                      const AEDesc* pContainer,
                                                      ConstStr255Param pName,
                                                      Boolean pDisposeInputs,
                                                      AEDesc* pObjSpecifier);

// A file by its alias, and the alias as a descriptor. The alias stays the caller's.
VANTOR_EXPORT OSErr MoreAEOCreateAliasObject(AliasHandle pAlias, AEDesc* pContainer,
                                             AEDesc* pObjSpecifier);
VANTOR_EXPORT OSErr MoreAEOCreateAliasDesc(AliasHandle pAlias, AEDesc* pAliasDesc);

// The same from a file, through an alias made for it. Also the platform's codes for making one.
VANTOR_EXPORT OSErr MoreAEOCreateAliasObjectFromFSSpec(const FSSpec* pFSSpec, AEDesc* pContainer,
                                                       AEDesc* pObjSpecifier);
VANTOR_EXPORT OSErr MoreAEOCreateAliasDescFromFSSpec(const FSSpec* pFSSpec, AEDesc* pAliasDesc);
// Puts it into an event; without the bytes that somebody may have appended to the record.
VANTOR_EXPORT OSErr MoreAEOAddAliasParameterFromFSSpec(const FSSpec* pFSSpec, AEKeyword pKeyword,
                                                       AppleEvent* pAppleEvent);

// A list of two 'long' items of two bytes each: horizontal, then vertical.
VANTOR_EXPORT OSErr MoreAEOCreatePositionList(Point pPosition, AEDescList* pList);

VANTOR_END_C
