// Prints events: class, ID, parameters, then the attributes, so that each comes back in its place.
#include <Carbon/AppleEvents.h>

#include <vector>

#include "apple_event_manager/text/print_items.h"

namespace carbon {
namespace {

struct Attribute {
    AEKeyword key;
    Item item;

    bool IsCode() const { return item.type == typeType && item.content.size() == sizeof(OSType); }
    OSType Code() const { return ReadBigEndian<UInt32>(item.content.data()); }
};

std::vector<Attribute> AttributesIn(const Item& inEvent) {
    std::vector<Attribute> attributes;
    ForEach(inEvent.content, AttributesOf(inEvent.content),
            [&](AEKeyword inKey, const Item& inItem) {
                attributes.push_back({inKey, inItem});
            });
    return attributes;
}

// The keywords in this attribute when tildes before these parameters say the same.
std::vector<AEKeyword> TildesFor(const Attribute& inAttribute, const Item& inEvent) {
    std::vector<AEKeyword> keys;
    const Item& list = inAttribute.item;
    if (inAttribute.key != keyOptionalKeywordAttr || list.kind != Kind::List ||
        list.type != typeAEList)
        return {};
    bool isPlain = true;
    ForEach(list.content, ItemsOf(list.kind, list.content), [&](AEKeyword, const Item& inItem) {
        isPlain &= inItem.type == typeKeyword && inItem.content.size() == sizeof(AEKeyword);
        if (isPlain) keys.push_back(ReadBigEndian<UInt32>(inItem.content.data()));
    });
    size_t next = 0;
    ForEach(inEvent.content, ItemsOf(inEvent.kind, inEvent.content),
            [&](AEKeyword inKey, const Item&) {
                if (next < keys.size() && keys[next] == inKey) ++next;
            });
    return isPlain && next == keys.size() ? keys : std::vector<AEKeyword>{};
}

// Takes the attribute off the front and prints its code: class and ID stand before the parameters.
void PrintFront(std::vector<Attribute>& ioAttributes, AEKeyword inKey, std::string& ioText) {
    const bool isThere =
        !ioAttributes.empty() && ioAttributes[0].key == inKey && ioAttributes[0].IsCode();
    PrintCode(isThere ? ioAttributes[0].Code() : OSType{typeNull}, ioText);
    if (isThere) ioAttributes.erase(ioAttributes.begin());
}

}  // namespace

void PrintEvent(const Item& inEvent, std::string& ioText) {
    std::vector<Attribute> attributes = AttributesIn(inEvent);
    PrintFront(attributes, keyEventClassAttr, ioText);
    ioText += '\\';
    PrintFront(attributes, keyEventIDAttr, ioText);
    std::vector<AEKeyword> tildes;
    if (!attributes.empty()) tildes = TildesFor(attributes.back(), inEvent);
    if (!tildes.empty()) attributes.pop_back();
    Entries entries(ioText, '{');
    size_t next = 0;
    ForEach(inEvent.content, ItemsOf(inEvent.kind, inEvent.content),
            [&](AEKeyword inKey, const Item& inItem) {
                const bool isOptional = next < tildes.size() && tildes[next] == inKey;
                next += isOptional;
                entries.Next();
                PrintKeyed(isOptional ? "~" : "", inKey, inItem, ioText);
            });
    for (const Attribute& attribute : attributes) {
        entries.Next();
        PrintKeyed("&", attribute.key, attribute.item, ioText);
    }
    entries.Close("}");
}

}  // namespace carbon
