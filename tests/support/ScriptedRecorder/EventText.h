// An event as one line of text, every byte of it.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

// A code as its four characters.
std::string TextOfCode(FourCharCode inCode);

// A descriptor: its type, then its bytes in hexadecimal (a code in quotes where the type holds
// one), its items in brackets for a list, its keys and items in braces for a record.
std::string TextOfDesc(const AEDesc& inDesc);

// Class and ID, transaction, whether a reply is wanted, then the parameters in the order they came:
//     core/setd tran=0 reply=1 ----=obj {...} data=bool 01
std::string TextOfEvent(const AppleEvent& inEvent);

// A 32-bit number attribute or parameter, 0 when it is missing.
UInt32 NumberAttribute(const AppleEvent& inEvent, AEKeyword inKey, DescType inType);
