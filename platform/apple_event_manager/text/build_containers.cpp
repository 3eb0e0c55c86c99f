// Makes lists, records, events and parameters of text.
#include <Carbon/AppleEvents.h>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/text/build_parser.h"

namespace carbon {
namespace {

// An argument may be as deep as a descriptor can get; nothing goes around it then.
void CheckDepth(const Item& inItem) {
    if (!Storage::FitsNesting(inItem)) ThrowIfFailed(paramErr);
}

void Put(Storage& ioRecord, AEKeyword inKey, const Item& inItem) {
    CheckDepth(inItem);
    if (const auto place = ioRecord.Find(inKey))
        ioRecord.Replace(*place, inItem);
    else
        ioRecord.Append(inKey, inItem);
}

void PutNumber(Storage& ioEvent, AEKeyword inKey, UInt32 inCode) {
    UInt8 bytes[sizeof inCode];
    WriteBigEndian(bytes, inCode);
    ioEvent.AddAttribute(inKey, {typeType, Kind::Leaf, bytes});
}

// Adds the keys to the list of those that the event's receiver may leave alone.
void PutOptional(Storage& ioEvent, const std::vector<AEKeyword>& inKeys) {
    if (inKeys.empty()) return;
    const auto at = ioEvent.FindAttribute(keyOptionalKeywordAttr);
    const bool isList = at && ioEvent.ItemAt(*at).kind == Kind::List;
    auto list =
        isList ? Storage::OfItem(ioEvent.ItemAt(*at)) : Storage::Empty(Kind::List, typeAEList);
    for (const AEKeyword key : inKeys) {
        UInt8 bytes[sizeof key];
        WriteBigEndian(bytes, UInt32{key});
        list->Append(typeWildCard, {typeKeyword, Kind::Leaf, bytes});
    }
    ioEvent.PutAttribute(keyOptionalKeywordAttr, {typeAEList, Kind::List, list->Content(), 1});
}

}  // namespace

void BuildParser::WholeParameters(Storage& ioEvent) {
    Parameters(ioEvent, '\0');
    if (mScanner.Peek() != '\0') mScanner.Fail(aeBuildSyntaxNoEOF);
}

void BuildParser::List(AEDesc* outDesc) {
    const Nested nested(mContainers, mScanner);
    mScanner.Take('[');
    auto list = Storage::Empty(Kind::List, typeAEList);
    for (bool goesOn = mScanner.Peek() != ']'; goesOn; goesOn = mScanner.Take(',')) {
        TemporaryDesc item;
        Value(item.Get());
        CheckDepth(ItemOf(*item));
        list->Append(typeWildCard, ItemOf(*item));
    }
    if (!mScanner.Take(']')) mScanner.Fail(aeBuildSyntaxNoCloseBracket);
    *outDesc = {typeAEList, HandleOf(std::move(list))};
}

AEKeyword BuildParser::Key() {
    if (mScanner.Peek() == '\0') mScanner.Fail(aeBuildSyntaxBadEOF);
    if (!mScanner.IsAtCode()) mScanner.Fail(aeBuildSyntaxNoKey);
    const AEKeyword key = mScanner.Code();
    if (!mScanner.Take(':')) mScanner.Fail(aeBuildSyntaxNoColon);
    return key;
}

void BuildParser::Record(DescType inType, AEDesc* outDesc) {
    const Nested nested(mContainers, mScanner);
    mScanner.Take('{');
    auto record = Storage::Empty(Kind::Record, inType);
    for (bool goesOn = mScanner.Peek() != '}'; goesOn; goesOn = mScanner.Take(',')) {
        TemporaryDesc value;
        const AEKeyword key = Key();
        Value(value.Get());
        Put(*record, key, ItemOf(*value));
    }
    if (!mScanner.Take('}')) mScanner.Fail(aeBuildSyntaxNoCloseBrace);
    *outDesc = {inType, HandleOf(std::move(record))};
}

void BuildParser::Event(OSType inClass, AEDesc* outDesc) {
    mScanner.Take('\\');
    if (!mScanner.IsAtCode()) mScanner.Fail(aeBuildSyntaxNoKey);
    const OSType id = mScanner.Code();
    const Nested nested(mContainers, mScanner);
    if (!mScanner.Take('{')) mScanner.Fail(aeBuildSyntaxBadDesc);
    auto event = Storage::Empty(Kind::Event, typeAppleEvent);
    PutNumber(*event, keyEventClassAttr, inClass);
    PutNumber(*event, keyEventIDAttr, id);
    Parameters(*event, '}');
    if (!mScanner.Take('}')) mScanner.Fail(aeBuildSyntaxNoCloseBrace);
    *outDesc = {typeAppleEvent, HandleOf(std::move(event))};
}

void BuildParser::Parameters(Storage& ioEvent, char inEnd) {
    std::vector<AEKeyword> optional;
    for (bool goesOn = mScanner.Peek() != inEnd; goesOn; goesOn = mScanner.Take(','))
        Parameter(ioEvent, optional);
    PutOptional(ioEvent, optional);
}

void BuildParser::Parameter(Storage& ioEvent, std::vector<AEKeyword>& ioOptional) {
    const bool isAttribute = mScanner.Take('&');
    const bool isOptional = !isAttribute && mScanner.Take('~');
    const AEKeyword key = Key();
    TemporaryDesc value;
    Value(value.Get());
    const Item item = ItemOf(*value);
    CheckDepth(item);
    if (isAttribute) return ioEvent.PutAttribute(key, item);
    Put(ioEvent, key, item);
    if (isOptional) ioOptional.push_back(key);
}

}  // namespace carbon
