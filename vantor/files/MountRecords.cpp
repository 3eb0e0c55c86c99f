// Building and reading the records of AppleShare volumes.
#include "vantor/files/MountRecords.h"

#include <cstring>

namespace {

// What both kinds of record are given.
struct Fields {
    SInt16 flags;
    SInt8 interval, count;
    SInt16 authentication;
    ConstStringPtr zone, server, volume, user, userPassword, volumePassword;
};

// Where the strings of a record begin.
struct Places {
    SInt16 zone, server, volume, user, userPassword, volumePassword;
};

constexpr Places kPlaces = {24, 58, 92, 120, 152, 162};
constexpr SInt16 kLength = 172;

constexpr Places kExtendedPlaces = {30, 64, 98, 126, 158, 168};
constexpr SInt16 kModulePlace = 178, kAddressPlace = 212;
constexpr SInt32 kExtendedLength = 213, kLongestRecord = 32767;

constexpr std::size_t kZoneWidth = 33, kServerWidth = 33, kVolumeWidth = 28, kUserWidth = 32,
                      kPasswordWidth = 9, kModuleWidth = 33;

char* PlaceIn(void* inRecord, SInt16 inOffset) {
    return static_cast<char*>(inRecord) + inOffset;
}

const UInt8* PlaceIn(const void* inRecord, SInt16 inOffset) {
    return static_cast<const UInt8*>(inRecord) + inOffset;
}

template <typename Record>
void StoreNumbers(Record* ioRecord, const Fields& inFields) {
    ioRecord->media = OSType{AppleShareMediaType};
    ioRecord->flags = inFields.flags;
    ioRecord->nbpInterval = inFields.interval;
    ioRecord->nbpCount = inFields.count;
    ioRecord->uamType = inFields.authentication;
}

// Kept: the whole width of each field is copied, with whatever stands behind the string.
template <typename Record>
void StoreStrings(Record* ioRecord, const Fields& inFields, const Places& inPlaces) {
    ioRecord->zoneNameOffset = inPlaces.zone;
    ioRecord->serverNameOffset = inPlaces.server;
    ioRecord->volNameOffset = inPlaces.volume;
    ioRecord->userNameOffset = inPlaces.user;
    ioRecord->userPasswordOffset = inPlaces.userPassword;
    ioRecord->volPasswordOffset = inPlaces.volumePassword;
    std::memcpy(PlaceIn(ioRecord, inPlaces.zone), inFields.zone, kZoneWidth);
    std::memcpy(PlaceIn(ioRecord, inPlaces.server), inFields.server, kServerWidth);
    std::memcpy(PlaceIn(ioRecord, inPlaces.volume), inFields.volume, kVolumeWidth);
    std::memcpy(PlaceIn(ioRecord, inPlaces.user), inFields.user, kUserWidth);
    std::memcpy(PlaceIn(ioRecord, inPlaces.userPassword), inFields.userPassword, kPasswordWidth);
    std::memcpy(PlaceIn(ioRecord, inPlaces.volumePassword), inFields.volumePassword,
                kPasswordWidth);
}

void StoreModule(AFPXVolMountInfo* ioRecord, ConstStringPtr inModule) {
    ioRecord->uamNameOffset = kModulePlace;
    std::memcpy(PlaceIn(ioRecord, kModulePlace), inModule, kModuleWidth);
}

void StoreAddress(AFPXVolMountInfo* ioRecord, SInt32 inLength, const void* inAddress) {
    ioRecord->alternateAddressOffset = kAddressPlace;
    if (inAddress == nullptr) {
        ioRecord->flags = SInt16(ioRecord->flags & ~volMountExtendedFlagsMask);
        return;
    }
    ioRecord->flags = SInt16(ioRecord->flags | volMountExtendedFlagsMask);
    ioRecord->extendedFlags = kAFPExtendedFlagsAlternateAddressMask;
    std::memcpy(PlaceIn(ioRecord, kAddressPlace), inAddress, std::size_t(inLength));
}

void CopyName(const void* inRecord, SInt16 inOffset, StringPtr outName) {
    if (inOffset == 0) return;
    const UInt8* const name = PlaceIn(inRecord, inOffset);
    std::memcpy(outName, name, name[0] + std::size_t{1});
}

template <typename Record>
void CopyFields(const Record* inRecord, SInt16* outFlags, SInt16* outAuthentication,
                StringPtr outZone, StringPtr outServer, StringPtr outVolume, StringPtr outUser) {
    *outFlags = inRecord->flags;
    *outAuthentication = inRecord->uamType;
    CopyName(inRecord, inRecord->zoneNameOffset, outZone);
    CopyName(inRecord, inRecord->serverNameOffset, outServer);
    CopyName(inRecord, inRecord->volNameOffset, outVolume);
    CopyName(inRecord, inRecord->userNameOffset, outUser);
}

bool HasAddress(const AFPXVolMountInfo* inRecord) {
    return (inRecord->flags & volMountExtendedFlagsMask) != 0 &&
           (inRecord->extendedFlags & kAFPExtendedFlagsAlternateAddressMask) != 0 &&
           inRecord->alternateAddressOffset != 0;
}

// A version, a count of entries, and the entries, each with its length in its first byte.
SInt32 LengthOfAddress(const UInt8* inAddress) {
    SInt32 length = 2;
    for (int entries = inAddress[1]; entries > 0; --entries) length += inAddress[length];
    return length;
}

OSErr CopyAddress(const AFPXVolMountInfo* inRecord, SInt32* outLength, Ptr* outAddress) {
    *outLength = 0;
    *outAddress = nullptr;
    if (!HasAddress(inRecord)) return noErr;
    const UInt8* const address = PlaceIn(inRecord, inRecord->alternateAddressOffset);
    const SInt32 length = LengthOfAddress(address);
    *outAddress = NewPtr(length);
    if (*outAddress == nullptr) return memFullErr;
    std::memcpy(*outAddress, address, std::size_t(length));
    *outLength = length;
    return noErr;
}

}  // namespace

OSErr BuildAFPVolMountInfo(SInt16 inFlags, SInt8 inNBPInterval, SInt8 inNBPCount,
                           SInt16 inAuthentication, ConstStringPtr inZone, ConstStringPtr inServer,
                           ConstStringPtr inVolume, ConstStringPtr inUser,
                           ConstStringPtr inUserPassword, ConstStringPtr inVolumePassword,
                           AFPVolMountInfo** outRecord) {
    *outRecord = reinterpret_cast<AFPVolMountInfo*>(NewPtrClear(kLength));
    if (*outRecord == nullptr) return memFullErr;
    const Fields fields = {inFlags,  inNBPInterval, inNBPCount, inAuthentication, inZone,
                           inServer, inVolume,      inUser,     inUserPassword,   inVolumePassword};
    (*outRecord)->length = kLength;
    StoreNumbers(*outRecord, fields);
    StoreStrings(*outRecord, fields, kPlaces);
    return noErr;
}

OSErr RetrieveAFPVolMountInfo(const AFPVolMountInfo* inRecord, SInt16* outFlags,
                              SInt16* outAuthentication, StringPtr outZone, StringPtr outServer,
                              StringPtr outVolume, StringPtr outUser) {
    if (inRecord->media != OSType{AppleShareMediaType}) return paramErr;
    CopyFields(inRecord, outFlags, outAuthentication, outZone, outServer, outVolume, outUser);
    return noErr;
}

OSErr BuildAFPXVolMountInfo(SInt16 inFlags, SInt8 inNBPInterval, SInt8 inNBPCount,
                            SInt16 inAuthentication, ConstStringPtr inZone, ConstStringPtr inServer,
                            ConstStringPtr inVolume, ConstStringPtr inUser,
                            ConstStringPtr inUserPassword, ConstStringPtr inVolumePassword,
                            ConstStringPtr inModule, SInt32 inAddressLength, const void* inAddress,
                            AFPXVolMountInfo** outRecord) {
    const SInt32 addressLength = inAddress != nullptr ? inAddressLength : 0;
    if (addressLength < 0 || addressLength > kLongestRecord - kExtendedLength) return paramErr;
    const SInt32 length = kExtendedLength + addressLength;
    *outRecord = reinterpret_cast<AFPXVolMountInfo*>(NewPtrClear(length));
    if (*outRecord == nullptr) return memFullErr;
    const Fields fields = {inFlags,  inNBPInterval, inNBPCount, inAuthentication, inZone,
                           inServer, inVolume,      inUser,     inUserPassword,   inVolumePassword};
    (*outRecord)->length = SInt16(length);
    StoreNumbers(*outRecord, fields);
    StoreStrings(*outRecord, fields, kExtendedPlaces);
    StoreModule(*outRecord, inModule);
    StoreAddress(*outRecord, addressLength, inAddress);
    return noErr;
}

OSErr RetrieveAFPXVolMountInfo(const AFPXVolMountInfo* inRecord, SInt16* outFlags,
                               SInt16* outAuthentication, StringPtr outZone, StringPtr outServer,
                               StringPtr outVolume, StringPtr outUser, StringPtr outModule,
                               SInt32* outAddressLength, Ptr* outAddress) {
    if (inRecord->media != OSType{AppleShareMediaType}) return paramErr;
    CopyFields(inRecord, outFlags, outAuthentication, outZone, outServer, outVolume, outUser);
    const OSErr err = CopyAddress(inRecord, outAddressLength, outAddress);
    if (err == noErr) CopyName(inRecord, inRecord->uamNameOffset, outModule);
    return err;
}
