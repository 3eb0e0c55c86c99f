// What the printing of lists, records and events has in common.
#pragma once

#include <string>

#include "apple_event_manager/text/print_leaf.h"

namespace carbon {

void PrintItem(const Item& inItem, std::string& ioText);
void PrintEvent(const Item& inEvent, std::string& ioText);

// Calls inUse(key, item) for each entry; the key is meaningless in a list.
template <typename Use>
void ForEach(Bytes inContent, const Section& inSection, Use inUse) {
    UInt32 at = inSection.begin;
    for (UInt32 i = 0; i < inSection.count; ++i) {
        const auto key =
            inSection.keySize ? ReadBigEndian<UInt32>(inContent.data() + at) : UInt32{0};
        const Item item = ReadItem(inContent, at + inSection.keySize);
        inUse(AEKeyword{key}, item);
        at += inSection.keySize + item.FormSize();
    }
}

// Entries between two brackets, separated by commas.
class Entries {
  public:
    Entries(std::string& ioText, char inOpening) : mText(ioText) { mText += inOpening; }
    void Next() { mText += mIsFirst ? " " : ", ", mIsFirst = false; }
    void Close(const char* inClosing) { (mText += mIsFirst ? "" : " ") += inClosing; }

  private:
    std::string& mText;
    bool mIsFirst = true;
};

inline void PrintKeyed(const char* inMark, AEKeyword inKey, const Item& inItem,
                       std::string& ioText) {
    ioText += inMark;
    PrintCode(inKey, ioText);
    ioText += ':';
    PrintItem(inItem, ioText);
}

}  // namespace carbon
