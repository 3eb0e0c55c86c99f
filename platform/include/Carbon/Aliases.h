// Aliases: records that remember a file and find it again after it was moved or renamed.
#ifndef CARBON_ALIASES_H
#define CARBON_ALIASES_H

#include <Carbon/MacTypes.h>

#pragma pack(push, 2)

// The head of an alias record, opaque: the stored numbers are big-endian on every machine and the
// bytes that follow are private. The size of a record is the size of its handle.
struct AliasRecord {
    UInt8 hidden[6];
};
typedef struct AliasRecord AliasRecord;
typedef AliasRecord* AliasPtr;
typedef AliasPtr* AliasHandle;  // a Handle of the Memory Manager, owned by whoever made it

#pragma pack(pop)

#endif
