// The notes, and their properties as values in descriptors. Failures are thrown as LException.
#pragma once

#include <Carbon/Carbon.h>

#include <string>
#include <vector>

#include "vantor/appleevents/StAEDescriptor.h"

namespace notebook {

enum : DescType { kNoteClass = 'note', kBody = 'body', kPriority = 'prio', kID = 'ID  ' };

struct Note {
    SInt32 id = 0;           // from 1, and never used again
    std::string name, body;  // UTF-8
    SInt32 priority = 0;
};

// In the order in which they were made.
using Notes = std::vector<Note>;
Notes& AllNotes();
Note& NoteWithID(SInt32 inID);  // throws errAENoSuchObject
SInt32 AddNote(Note inNote);    // its new ID

// errAENoSuchObject for a property that notes do not have, errAENotModifiable for the ID.
void GetProperty(const Note& inNote, DescType inProperty, StAEDescriptor& outValue);
void SetProperty(Note& ioNote, DescType inProperty, const AEDesc& inValue);

void MakeText(const std::string& inUtf8, StAEDescriptor& outText);
std::string TextFrom(const AEDesc& inText);  // any text, as UTF-8

}  // namespace notebook
