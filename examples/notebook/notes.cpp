// Owns the notes. They live as long as the process.
#include "notes.h"

#include <algorithm>

#include "vantor/appleevents/UExtractFromAEDesc.h"
#include "vantor/foundation/LException.h"

namespace notebook {

Notes& AllNotes() {
    static Notes sNotes;
    return sNotes;
}

Note& NoteWithID(SInt32 inID) {
    const auto found = std::find_if(AllNotes().begin(), AllNotes().end(),
                                    [&](const Note& note) { return note.id == inID; });
    if (found == AllNotes().end()) LException::Throw(errAENoSuchObject);
    return *found;
}

SInt32 AddNote(Note inNote) {
    static SInt32 sLastID = 0;
    inNote.id = ++sLastID;
    AllNotes().push_back(std::move(inNote));
    return sLastID;
}

void GetProperty(const Note& inNote, DescType inProperty, StAEDescriptor& outValue) {
    switch (inProperty) {
        case pName:
            return MakeText(inNote.name, outValue);
        case kBody:
            return MakeText(inNote.body, outValue);
        case kPriority:
            outValue.Assign(inNote.priority);
            return;
        case kID:
            outValue.Assign(inNote.id);
            return;
        default:
            LException::Throw(errAENoSuchObject);
    }
}

void SetProperty(Note& ioNote, DescType inProperty, const AEDesc& inValue) {
    switch (inProperty) {
        case pName:
            ioNote.name = TextFrom(inValue);
            return;
        case kBody:
            ioNote.body = TextFrom(inValue);
            return;
        case kPriority:
            return UExtractFromAEDesc::TheSInt32(inValue, ioNote.priority);
        case kID:
            LException::Throw(errAENotModifiable);
        default:
            LException::Throw(errAENoSuchObject);
    }
}

void MakeText(const std::string& inUtf8, StAEDescriptor& outText) {
    outText.Dispose();
    ThrowIfError(AECreateDesc(typeUTF8Text, inUtf8.data(), Size(inUtf8.size()), outText));
}

std::string TextFrom(const AEDesc& inText) {
    StAEDescriptor utf8;
    ThrowIfError(AECoerceDesc(&inText, typeUTF8Text, utf8));
    std::string text(size_t(AEGetDescDataSize(utf8)), '\0');
    ThrowIfError(AEGetDescData(utf8, text.data(), Size(text.size())));
    return text;
}

}  // namespace notebook
