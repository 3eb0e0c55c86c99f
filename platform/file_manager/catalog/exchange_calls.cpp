// Owns the calls that exchange two files' contents.
#include <Carbon/MacErrors.h>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/exchanged_files.h"
#include "file_manager/parameter_block.h"

namespace carbon {

namespace {

OSErr TakeSide(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
               ConstStr255Param inName, ExchangeSide* outSide) {
    const OSErr error = Locate(ioObjects, inVolume, inDirectory, inName, &outSide->located);
    if (error != noErr) return error;
    const Object& object = outSide->located.object;
    if (object.status.IsFolder()) return notAFileErr;
    if (const OSErr unread = ReadMetadata(object, &outSide->metadata)) return unread;
    outSide->created = CreationTimeOf(object.status, outSide->metadata.facts);
    return outSide->metadata.companion == CompanionState::kDamaged ? OSErr(ioErr) : OSErr(noErr);
}

OSErr CheckSides(const ExchangeSide& inOne, const ExchangeSide& inOther) {
    const Located &one = inOne.located, &other = inOther.located;
    if (one.volume.number != other.volume.number) return diffVolErr;
    if (Lacks(one.volume, kPlatformMountNoExchange)) return paramErr;
    if (one.object.status.identity.IsSameAs(other.object.status.identity)) return sameFileErr;
    const OSErr error = CheckChangeable(one);
    return error == noErr ? CheckChangeable(other) : error;
}

OSErr Exchange(Objects& ioObjects, const ExchangeSide& inOne, const ExchangeSide& inOther) {
    const OSErr error = CheckSides(inOne, inOther);
    return error == noErr ? ExchangeFiles(ioObjects, inOne, inOther) : error;
}

OSErr ExchangeByBlock(const FIDParam& inRecord) {
    const Catalog catalog;
    ExchangeSide one, other;
    OSErr error =
        TakeSide(*catalog, inRecord.ioVRefNum, inRecord.ioSrcDirID, inRecord.ioNamePtr, &one);
    if (error == noErr) {
        error = TakeSide(*catalog, one.located.volume.number, inRecord.ioDestDirID,
                         inRecord.ioDestNamePtr, &other);
    }
    return error == noErr ? Exchange(*catalog, one, other) : error;
}

OSErr ExchangeSpecs(const FSSpec& inOne, const FSSpec& inOther) {
    const Catalog catalog;
    ExchangeSide one, other;
    OSErr error = TakeSide(*catalog, inOne.vRefNum, inOne.parID, inOne.name, &one);
    if (error == noErr)
        error = TakeSide(*catalog, inOther.vRefNum, inOther.parID, inOther.name, &other);
    return error == noErr ? Exchange(*catalog, one, other) : error;
}

}  // namespace

}  // namespace carbon

OSErr FSpExchangeFiles(const FSSpec* source, const FSSpec* dest) {
    return source && dest ? carbon::ExchangeSpecs(*source, *dest) : OSErr(paramErr);
}

OSErr PBExchangeFilesSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fidParam,
                           [](FIDParam& inRecord) { return carbon::ExchangeByBlock(inRecord); });
}
