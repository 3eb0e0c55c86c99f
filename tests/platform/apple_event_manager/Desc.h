// A descriptor that disposes itself, and short ways to make and read one.
#pragma once

#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

class Desc {
  public:
    Desc() = default;
    Desc(DescType inType, std::string_view inBytes) {
        EXPECT_EQ(AECreateDesc(inType, inBytes.data(), Size(inBytes.size()), &mDesc), noErr);
    }
    Desc(Desc&& inOther) noexcept : mDesc(inOther.mDesc) { inOther.mDesc = {typeNull, nullptr}; }
    Desc& operator=(Desc&& inOther) noexcept {
        std::swap(mDesc, inOther.mDesc);
        return *this;
    }
    ~Desc() { AEDisposeDesc(&mDesc); }

    // The descriptor to read or change.
    AEDesc* operator&() { return &mDesc; }
    const AEDesc* operator&() const { return &mDesc; }
    // A place for a call to fill.
    AEDesc* Out() {
        AEDisposeDesc(&mDesc);
        return &mDesc;
    }
    operator const AEDesc&() const { return mDesc; }
    DescType Type() const { return mDesc.descriptorType; }
    bool IsNull() const { return mDesc.descriptorType == typeNull && !mDesc.dataHandle; }
    std::string Bytes() const {
        std::string bytes(size_t(AEGetDescDataSize(&mDesc)), '\0');
        EXPECT_EQ(AEGetDescData(&mDesc, bytes.data(), Size(bytes.size())), noErr);
        return bytes;
    }
    std::string Flat() const {
        std::string bytes(size_t(AESizeOfFlattenedDesc(&mDesc)), '\0');
        EXPECT_EQ(AEFlattenDesc(&mDesc, bytes.data(), Size(bytes.size()), nullptr), noErr);
        return bytes;
    }

  private:
    AEDesc mDesc = {typeNull, nullptr};
};

// Big-endian bytes of a number.
template <typename T>
std::string Big(T inValue) {
    std::string bytes(sizeof inValue, '\0');
    for (size_t i = 0; i < sizeof inValue; ++i)
        bytes[sizeof inValue - 1 - i] = char(UInt64(inValue) >> (8 * i) & 0xFF);
    return bytes;
}

inline Desc Long(SInt32 inValue) {
    return Desc(typeSInt32, Big(inValue));
}
inline Desc Text(std::string_view inText) {
    return Desc(typeChar, inText);
}
inline Desc Code(DescType inType, OSType inCode) {
    return Desc(inType, Big(inCode));
}

inline Desc List() {
    Desc list;
    EXPECT_EQ(AECreateList(nullptr, 0, false, &list), noErr);
    return list;
}
inline Desc Record() {
    Desc record;
    EXPECT_EQ(AECreateList(nullptr, 0, true, &record), noErr);
    return record;
}
inline Desc Event(AEEventClass inClass = 'core', AEEventID inID = 'getd') {
    Desc event;
    EXPECT_EQ(AECreateAppleEvent(inClass, inID, nullptr, kAutoGenerateReturnID, kAnyTransactionID,
                                 &event),
              noErr);
    return event;
}

inline Desc Param(const Desc& inRecord, AEKeyword inKey, DescType inType = typeWildCard) {
    Desc found;
    EXPECT_EQ(AEGetParamDesc(&inRecord, inKey, inType, &found), noErr);
    return found;
}
inline Desc Nth(const Desc& inList, SInt32 inIndex, DescType inType = typeWildCard) {
    Desc found;
    EXPECT_EQ(AEGetNthDesc(&inList, inIndex, inType, nullptr, &found), noErr);
    return found;
}
inline SInt32 Count(const Desc& inList) {
    SInt32 count = -1;
    EXPECT_EQ(AECountItems(&inList, &count), noErr);
    return count;
}

// A list of 'long'.
inline Desc Longs(std::initializer_list<SInt32> inValues) {
    Desc list = List();
    for (const SInt32 value : inValues) {
        const Desc item = Long(value);
        EXPECT_EQ(AEPutDesc(&list, 0, &item), noErr);
    }
    return list;
}

// The keys of a record, one after the other.
inline std::string Keys(const Desc& inRecord) {
    std::string keys;
    for (SInt32 i = 1; i <= Count(inRecord); ++i) {
        AEKeyword key = 0;
        EXPECT_EQ(AEGetNthPtr(&inRecord, i, typeWildCard, &key, nullptr, nullptr, 0, nullptr),
                  noErr);
        keys += Big(key);
    }
    return keys;
}
