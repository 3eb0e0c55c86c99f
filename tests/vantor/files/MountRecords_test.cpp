// Building and reading the records of servers' volumes.
#include "vantor/files/MountRecords.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "support/PascalString.h"
#include "support/RealCall.h"

namespace {

bool sNoMemory = false;

}  // namespace

Ptr NewPtr(Size inSize) {
    return sNoMemory ? nullptr : REAL_CALL(NewPtr)(inSize);
}

Ptr NewPtrClear(Size inSize) {
    return sNoMemory ? nullptr : REAL_CALL(NewPtrClear)(inSize);
}

namespace {

struct StNoMemory {
    StNoMemory() { sNoMemory = true; }
    ~StNoMemory() { sNoMemory = false; }
};

struct Disposer {
    void operator()(void* inBlock) const { DisposePtr(static_cast<Ptr>(inBlock)); }
};
template <typename Record>
using Owned = std::unique_ptr<Record, Disposer>;

// A buffer as wide as any field, filled up behind the string.
struct Filled {
    explicit Filled(const char* inText) {
        std::memset(mBytes, 0xEE, sizeof mBytes);
        mBytes[0] = UInt8(std::strlen(inText));
        std::memcpy(mBytes + 1, inText, mBytes[0]);
    }
    operator ConstStringPtr() const { return mBytes; }
    UInt8 mBytes[33];
};

const Filled kZone("Zone"), kServer("Server"), kVolume("Volume"), kUser("User"), kWord("secret"),
    kVolumeWord("open"), kModule("Module");
const UInt8 kAddress[] = {0, 2, 6, 1, 10, 0, 0, 1, 5, 4, 'a', '.', 'b'};

Owned<AFPVolMountInfo> Built(SInt16 inFlags = 1) {
    AFPVolMountInfo* record = nullptr;
    EXPECT_EQ(BuildAFPVolMountInfo(inFlags, 2, 3, kEncryptPassword, kZone, kServer, kVolume, kUser,
                                   kWord, kVolumeWord, &record),
              noErr);
    return Owned<AFPVolMountInfo>(record);
}

Owned<AFPXVolMountInfo> BuiltX(SInt16 inFlags, const void* inAddress, SInt32 inLength) {
    AFPXVolMountInfo* record = nullptr;
    EXPECT_EQ(BuildAFPXVolMountInfo(inFlags, 2, 3, kPassword, kZone, kServer, kVolume, kUser, kWord,
                                    kVolumeWord, kModule, inLength, inAddress, &record),
              noErr);
    return Owned<AFPXVolMountInfo>(record);
}

std::string TextAt(const void* inRecord, int inOffset) {
    return TextOf(static_cast<const UInt8*>(inRecord) + inOffset);
}

bool HasAt(const void* inRecord, int inOffset, ConstStringPtr inField, std::size_t inWidth) {
    return std::memcmp(static_cast<const UInt8*>(inRecord) + inOffset, inField, inWidth) == 0;
}

// What a record is read into.
struct Fields {
    SInt16 flags = -1, authentication = -1;
    Str255 zone = {1, '?'}, server = {1, '?'}, volume = {1, '?'}, user = {1, '?'},
           module = {1, '?'};
    SInt32 length = -1;
    Ptr address = nullptr;
    ~Fields() { DisposePtr(address); }

    OSErr Read(const AFPVolMountInfo* inRecord) {
        return RetrieveAFPVolMountInfo(inRecord, &flags, &authentication, zone, server, volume,
                                       user);
    }
    OSErr Read(const AFPXVolMountInfo* inRecord) {
        return RetrieveAFPXVolMountInfo(inRecord, &flags, &authentication, zone, server, volume,
                                        user, module, &length, &address);
    }
};

TEST(AFPVolMountInfo, IsBuiltAsOneBlockWithItsStringsInPlace) {
    const auto record = Built();
    EXPECT_EQ(GetPtrSize(reinterpret_cast<Ptr>(record.get())), 172);
    EXPECT_EQ(+record->length, 172);
    EXPECT_EQ(+record->media, OSType{'afpm'});
    EXPECT_EQ(+record->flags, 1);
    EXPECT_EQ(+record->nbpInterval, 2);
    EXPECT_EQ(+record->nbpCount, 3);
    EXPECT_EQ(+record->uamType, kEncryptPassword);
    EXPECT_EQ(+record->zoneNameOffset, 24);
    EXPECT_EQ(+record->serverNameOffset, 58);
    EXPECT_EQ(+record->volNameOffset, 92);
    EXPECT_EQ(+record->userNameOffset, 120);
    EXPECT_EQ(+record->userPasswordOffset, 152);
    EXPECT_EQ(+record->volPasswordOffset, 162);
    EXPECT_EQ(TextAt(record.get(), 24), "Zone");
    EXPECT_EQ(TextAt(record.get(), 162), "open");
}

TEST(AFPVolMountInfo, KeepsCopyingTheWholeWidthOfEachField) {
    const auto record = Built();
    EXPECT_TRUE(HasAt(record.get(), 24, kZone, 33));
    EXPECT_TRUE(HasAt(record.get(), 58, kServer, 33));
    EXPECT_TRUE(HasAt(record.get(), 92, kVolume, 28));
    EXPECT_TRUE(HasAt(record.get(), 120, kUser, 32));
    EXPECT_TRUE(HasAt(record.get(), 152, kWord, 9));
    EXPECT_TRUE(HasAt(record.get(), 162, kVolumeWord, 9));
    for (const int gap : {57, 91, 161, 171}) {
        EXPECT_EQ(reinterpret_cast<const UInt8*>(record.get())[gap], 0) << gap;
    }
}

TEST(AFPVolMountInfo, IsReadWithoutItsPasswords) {
    Fields fields;
    const auto record = Built(0x4001);
    ASSERT_EQ(fields.Read(record.get()), noErr);
    EXPECT_EQ(fields.flags, 0x4001);
    EXPECT_EQ(fields.authentication, kEncryptPassword);
    EXPECT_EQ(TextOf(fields.zone), "Zone");
    EXPECT_EQ(TextOf(fields.server), "Server");
    EXPECT_EQ(TextOf(fields.volume), "Volume");
    EXPECT_EQ(TextOf(fields.user), "User");
}

TEST(AFPVolMountInfo, LeavesANameWithoutAnOffsetUntouched) {
    Fields fields;
    const auto record = Built();
    record->serverNameOffset = 0;
    ASSERT_EQ(fields.Read(record.get()), noErr);
    EXPECT_EQ(TextOf(fields.server), "?");
    EXPECT_EQ(TextOf(fields.volume), "Volume");
}

TEST(AFPVolMountInfo, OfAnotherKindOfServerIsRefused) {
    Fields fields;
    const auto record = Built();
    record->media = 'smb ';
    EXPECT_EQ(fields.Read(record.get()), paramErr);
    EXPECT_EQ(fields.flags, -1);
    EXPECT_EQ(TextOf(fields.zone), "?");
}

TEST(AFPVolMountInfo, WithoutMemoryThereIsNone) {
    const StNoMemory none;
    AFPVolMountInfo* record = nullptr;
    EXPECT_EQ(BuildAFPVolMountInfo(0, 0, 0, 0, kZone, kServer, kVolume, kUser, kWord, kVolumeWord,
                                   &record),
              memFullErr);
    EXPECT_EQ(record, nullptr);
}

TEST(AFPXVolMountInfo, IsBuiltWithTheAddressBehindAll) {
    const auto record = BuiltX(1, kAddress, sizeof kAddress);
    EXPECT_EQ(GetPtrSize(reinterpret_cast<Ptr>(record.get())), 213 + Size(sizeof kAddress));
    EXPECT_EQ(+record->length, 213 + int(sizeof kAddress));
    EXPECT_EQ(+record->media, OSType{'afpm'});
    EXPECT_EQ(+record->flags, 0x81);
    EXPECT_EQ(+record->zoneNameOffset, 30);
    EXPECT_EQ(+record->serverNameOffset, 64);
    EXPECT_EQ(+record->volNameOffset, 98);
    EXPECT_EQ(+record->userNameOffset, 126);
    EXPECT_EQ(+record->userPasswordOffset, 158);
    EXPECT_EQ(+record->volPasswordOffset, 168);
    EXPECT_EQ(+record->extendedFlags, 1);
    EXPECT_EQ(+record->uamNameOffset, 178);
    EXPECT_EQ(+record->alternateAddressOffset, 212);
    EXPECT_TRUE(HasAt(record.get(), 178, kModule, 33));
    EXPECT_TRUE(HasAt(record.get(), 212, kAddress, sizeof kAddress));
}

TEST(AFPXVolMountInfo, WithoutAnAddressClearsTheFlagForOne) {
    const auto record = BuiltX(0x4081, nullptr, 0);
    EXPECT_EQ(+record->length, 213);
    EXPECT_EQ(+record->flags, 0x4001);
    EXPECT_EQ(+record->extendedFlags, 0);
    EXPECT_EQ(+record->alternateAddressOffset, 212);
}

TEST(AFPXVolMountInfo, RefusesAnAddressThatNoRecordHolds) {
    AFPXVolMountInfo* record = nullptr;
    for (const SInt32 length : {-1, 32767 - 212}) {
        EXPECT_EQ(BuildAFPXVolMountInfo(0, 0, 0, 0, kZone, kServer, kVolume, kUser, kWord,
                                        kVolumeWord, kModule, length, kAddress, &record),
                  paramErr);
    }
    EXPECT_EQ(record, nullptr);
}

TEST(AFPXVolMountInfo, IsReadWithAMeasuredCopyOfTheAddress) {
    Fields fields;
    const auto record = BuiltX(0, kAddress, sizeof kAddress);
    ASSERT_EQ(fields.Read(record.get()), noErr);
    EXPECT_EQ(fields.flags, 0x80);
    EXPECT_EQ(TextOf(fields.user), "User");
    EXPECT_EQ(TextOf(fields.module), "Module");
    ASSERT_EQ(fields.length, SInt32(sizeof kAddress));
    EXPECT_EQ(std::memcmp(fields.address, kAddress, sizeof kAddress), 0);
    EXPECT_EQ(GetPtrSize(fields.address), Size(sizeof kAddress));
}

TEST(AFPXVolMountInfo, HasNoAddressUnlessBothFlagsAndTheOffsetSaySo) {
    const auto record = BuiltX(0, kAddress, sizeof kAddress);
    const auto read = [&] {
        Fields fields;
        EXPECT_EQ(fields.Read(record.get()), noErr);
        EXPECT_EQ(TextOf(fields.module), "Module");
        return fields.length;
    };
    record->flags = 0;
    EXPECT_EQ(read(), 0);
    record->flags = 0x80;
    record->extendedFlags = 2;
    EXPECT_EQ(read(), 0);
    record->extendedFlags = 1;
    record->alternateAddressOffset = 0;
    EXPECT_EQ(read(), 0);
}

TEST(AFPXVolMountInfo, WithoutMemoryForTheAddressTellsTheFieldsButNotTheModule) {
    Fields fields;
    const auto record = BuiltX(0, kAddress, sizeof kAddress);
    const StNoMemory none;
    EXPECT_EQ(fields.Read(record.get()), memFullErr);
    EXPECT_EQ(TextOf(fields.zone), "Zone");
    EXPECT_EQ(TextOf(fields.module), "?");
    EXPECT_EQ(fields.address, nullptr);
}

TEST(AFPXVolMountInfo, LeavesAModuleWithoutAnOffsetUntouched) {
    Fields fields;
    const auto record = BuiltX(0, nullptr, 0);
    record->uamNameOffset = 0;
    ASSERT_EQ(fields.Read(record.get()), noErr);
    EXPECT_EQ(TextOf(fields.module), "?");
}

TEST(AFPXVolMountInfo, OfAnotherKindOfServerIsRefused) {
    Fields fields;
    const auto record = BuiltX(0, nullptr, 0);
    record->media = 0;
    EXPECT_EQ(fields.Read(record.get()), paramErr);
    EXPECT_EQ(TextOf(fields.zone), "?");
}

}  // namespace
