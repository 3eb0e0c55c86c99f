// Text Utilities: Pascal and C strings, and changing the case and marks of MacRoman text.
#ifndef CARBON_TEXTUTILS_H
#define CARBON_TEXTUTILS_H

#include <Carbon/MacTypes.h>
#include <Carbon/Script.h>

PLATFORM_DECLARATIONS_BEGIN

// A zero-terminated string as a Pascal string: at most 255 characters, the rest is cut off. A null
// source gives the empty string. Source and destination may be the same memory.
void CopyCStringToPascal(const char* src, Str255 dst);
void c2pstrcpy(Str255 dst, const char* src);

// A Pascal string as a zero-terminated one, for which `dst` must have room: its length and one. A
// null source gives the empty string. Source and destination may be the same memory.
void CopyPascalStringToC(ConstStr255Param src, char* dst);
void p2cstrcpy(char* dst, ConstStr255Param src);

// Puts a string into capitals as the file system does: accented letters whose capitals lie above
// D8 stay as they are. Without `diacSensitive` letters lose their marks as well.
void UpperString(Str255 theString, Boolean diacSensitive);

// Changes `len` characters in place: capitals, small letters, letters without marks, both. A length
// of 0 or less does nothing. Only the Roman script (smRoman, smSystemScript, smCurrentScript while
// that is Roman) has tables: with any other one the text stays as it is and ResError is resNotFound
// (noErr otherwise).
void UppercaseText(Ptr textPtr, SInt16 len, ScriptCode script);
void LowercaseText(Ptr textPtr, SInt16 len, ScriptCode script);
void StripDiacritics(Ptr textPtr, SInt16 len, ScriptCode script);
void UppercaseStripDiacritics(Ptr textPtr, SInt16 len, ScriptCode script);

// A new handle holding a copy of a Pascal string, and the same for a handle that there is; the
// caller disposes of it. Null with memFullErr when there is no room; MemError tells.
StringHandle NewString(ConstStr255Param theString);
void SetString(StringHandle theString, ConstStr255Param strNew);

// The 'STR ' resource with an ID: the resource itself, of which the file keeps hold, not a copy.
// Null when there is none, with ResError as GetResource leaves it.
StringHandle GetString(SInt16 stringID);

// Copies a string, counted from 1, of the 'STR#' resource with an ID. The empty string when there
// is no such list, the index is not in it, or the list ends before the string does; ResError is as
// GetResource left it.
void GetIndString(Str255 theString, SInt16 strListID, SInt16 index);

PLATFORM_DECLARATIONS_END

#endif
