// Owns what each event does.
#include "events.h"

#include <algorithm>
#include <array>

#include "notes.h"
#include "objects.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/UAppleEventsMgr.h"

namespace notebook {
namespace {

bool sIsAskedToQuit = false;

void Answer(const StAEDescriptor& inValue, AppleEvent& ioReply) {
    ThrowIfError(MoreAEAddResultToReply(inValue, &ioReply, noErr));
}

// The value of a property, a specifier for a note, as the type the sender wants.
void GetAs(const Object& inObject, DescType inType, StAEDescriptor& outValue) {
    StAEDescriptor value;
    GetValue(inObject, value);
    outValue.Dispose();
    ThrowIfError(AECoerceDesc(value, inType, outValue));
}

void HandleGet(const AppleEvent& inEvent, AppleEvent& ioReply) {
    StAEDescriptor specifier, wanted, answer, list;
    specifier.GetParamDesc(inEvent, keyDirectObject);
    wanted.GetOptionalParamDesc(inEvent, keyAERequestedType, typeType);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    const bool isAnyType = wanted.mDesc.descriptorType == DescType(typeNull);
    const DescType type = isAnyType ? DescType(typeWildCard) : CodeFrom(wanted);
    const Objects objects = Resolve(specifier);
    if (objects.areMany) ThrowIfError(AECreateList(nullptr, 0, false, list));
    for (const Object& object : objects.each) {
        GetAs(object, type, answer);
        if (objects.areMany) ThrowIfError(AEPutDesc(list, 0, answer));
    }
    Answer(objects.areMany ? list : answer, ioReply);
}

// The note a property belongs to; those of the application are only to be read.
Note& OwnerOf(const Object& inProperty) {
    if (inProperty.note == 0 || inProperty.property == 0) LException::Throw(errAENotModifiable);
    return NoteWithID(inProperty.note);
}

void HandleSet(const AppleEvent& inEvent, AppleEvent&) {
    StAEDescriptor specifier, value;
    specifier.GetParamDesc(inEvent, keyDirectObject);
    value.GetParamDesc(inEvent, keyAEData);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    for (const Object& object : Resolve(specifier).each)
        SetProperty(OwnerOf(object), object.property, value);
}

void CheckIsNote(const AppleEvent& inEvent) {
    StAEDescriptor wanted;
    wanted.GetParamDesc(inEvent, keyAEObjectClass, typeType);
    if (CodeFrom(wanted) != DescType(kNoteClass)) LException::Throw(errAENoSuchObject);
}

void HandleCount(const AppleEvent& inEvent, AppleEvent& ioReply) {
    StAEDescriptor container;
    container.GetOptionalParamDesc(inEvent, keyDirectObject);
    CheckIsNote(inEvent);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    SInt32 count = 0;
    for (const Object& object : Resolve(container).each)
        if (object.note == 0 && object.property == 0) count += SInt32(AllNotes().size());
    Answer(StAEDescriptor(count), ioReply);
}

// The note is complete before it is one of all, so that a wrong property leaves nothing behind.
void HandleMake(const AppleEvent& inEvent, AppleEvent& ioReply) {
    CheckIsNote(inEvent);
    StAEDescriptor properties, specifier;
    properties.GetOptionalParamDesc(inEvent, keyAEPropData, typeAERecord);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    Note note;
    SInt32 count = 0;
    if (properties.mDesc.descriptorType != DescType(typeNull))
        ThrowIfError(AECountItems(properties, &count));
    for (SInt32 i = 1; i <= count; ++i) {
        StAEDescriptor value;
        AEKeyword property = 0;
        ThrowIfError(AEGetNthDesc(properties, i, typeWildCard, &property, value));
        SetProperty(note, property, value);
    }
    GetValue({AddNote(std::move(note))}, specifier);
    Answer(specifier, ioReply);
}

void HandleDelete(const AppleEvent& inEvent, AppleEvent&) {
    StAEDescriptor specifier;
    specifier.GetParamDesc(inEvent, keyDirectObject);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    const Objects objects = Resolve(specifier);
    for (const Object& object : objects.each)
        if (object.note == 0 || object.property != 0) LException::Throw(errAENotModifiable);
    for (const Object& object : objects.each)
        std::erase_if(AllNotes(), [&](const Note& note) { return note.id == object.note; });
}

void HandleOpen(const AppleEvent&, AppleEvent&) {}

void HandleQuit(const AppleEvent& inEvent, AppleEvent&) {
    const StAEDescriptor saving(inEvent, keyAESaveOptions);  // read, and of no consequence
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    sIsAskedToQuit = true;
}

struct Entry {
    OSType name;  // the last word of a line of the resource 'aedt'
    void (*handle)(const AppleEvent&, AppleEvent&);
};

constexpr auto kHandlers = std::to_array<Entry>({{'getd', HandleGet},
                                                 {'setd', HandleSet},
                                                 {'cnte', HandleCount},
                                                 {'crel', HandleMake},
                                                 {'delo', HandleDelete},
                                                 {'oapp', HandleOpen},
                                                 {'quit', HandleQuit}});

// One function for all events; what it returns becomes the error number of the reply.
OSErr Handle(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32 inName) {
    return CodeOf([&] {
        const auto* entry =
            std::find_if(kHandlers.begin(), kHandlers.end(),
                         [&](const Entry& each) { return each.name == OSType(inName); });
        if (entry == kHandlers.end()) LException::Throw(errAEHandlerNotFound);
        entry->handle(*inEvent, *ioReply);
    });
}

}  // namespace

void InstallHandlers() {
    InstallObjectAccessors();
    if (CountResources('aedt') == 0) LException::Throw(resNotFound);
    UAppleEventsMgr::InstallAEHandlers(Handle);
}

bool IsAskedToQuit() {
    return sIsAskedToQuit;
}

}  // namespace notebook
