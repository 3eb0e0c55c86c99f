// Prints values, lists and records. What has no form of its own in the syntax is written byte by
// byte.
#include "apple_event_manager/text/print.h"

#include <Carbon/AEHelpers.h>
#include <Carbon/MacMemory.h>

#include "apple_event_manager/data/access.h"
#include "apple_event_manager/text/print_items.h"
#include "apple_event_manager/text/print_leaf.h"

namespace carbon {
namespace {

// A list that somebody gave another type cannot be built again: it looks like the mistake that it
// is.
void PrintList(const Item& inList, std::string& ioText) {
    const bool isPlain = inList.type == typeAEList;
    if (!isPlain) PrintCode(inList.type, ioText), ioText += '(';
    Entries entries(ioText, '[');
    ForEach(inList.content, ItemsOf(inList.kind, inList.content),
            [&](AEKeyword, const Item& inItem) { entries.Next(), PrintItem(inItem, ioText); });
    entries.Close(isPlain ? "]" : "])");
}

void PrintRecord(const Item& inRecord, std::string& ioText) {
    if (inRecord.type != typeAERecord) PrintCode(inRecord.type, ioText);
    Entries entries(ioText, '{');
    ForEach(inRecord.content, ItemsOf(inRecord.kind, inRecord.content),
            [&](AEKeyword inKey, const Item& inItem) {
                entries.Next();
                PrintKeyed("", inKey, inItem, ioText);
            });
    entries.Close("}");
}

OSErr MakeHandle(const std::string& inText, Handle* outHandle) {
    if (inText.size() > size_t{wire::kMaximumSize}) return memFullErr;
    return PtrToHand(inText.data(), outHandle, static_cast<Size>(inText.size()));
}

}  // namespace

void PrintItem(const Item& inItem, std::string& ioText) {
    switch (inItem.kind) {
        case Kind::Leaf:
            return PrintLeaf(inItem, ioText);
        case Kind::List:
            return PrintList(inItem, ioText);
        case Kind::Record:
            return PrintRecord(inItem, ioText);
        case Kind::Event:
            return PrintEvent(inItem, ioText);
    }
}

std::string PrintedDesc(const AEDesc& inDesc) {
    std::string text;
    PrintItem(ItemOf(inDesc), text);
    return text;
}

}  // namespace carbon

using namespace carbon;

OSStatus AEPrintDescToHandle(const AEDesc* desc, Handle* result) {
    if (!result) return paramErr;
    *result = nullptr;
    if (!desc) return paramErr;
    return Guarded([&] { return MakeHandle(PrintedDesc(*desc), result); });
}
