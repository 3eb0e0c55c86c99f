// Values as descriptors and back, beyond what the toolkit has: UTF-8 text, 64-bit numbers, lists of
// text.
#pragma once

#include <Carbon/Carbon.h>

#include <string>
#include <vector>

#include "vantor/appleevents/StAEDescriptor.h"

namespace recorder {

void MakeBoolean(bool inValue, StAEDescriptor& outDesc);
void MakeNumber(SInt32 inValue, StAEDescriptor& outDesc);
void MakeBigNumber(UInt64 inValue, StAEDescriptor& outDesc);
void MakeCode(DescType inType, OSType inValue, StAEDescriptor& outDesc);  // a 'type' or an 'enum'
void MakeText(const std::string& inUtf8, StAEDescriptor& outDesc);        // 'utf8'
void MakeTextList(const std::vector<std::string>& inUtf8, StAEDescriptor& outDesc);

// The same value as another type. Text that has characters MacRoman lacks shows a question mark for
// each, and as a Pascal string it ends after 255. Throws errAECoercionFail.
void ConvertTo(DescType inType, StAEDescriptor& ioDesc);

bool BooleanFrom(const AEDesc& inDesc);
OSType CodeFrom(const AEDesc& inDesc);
std::string TextFrom(const AEDesc& inDesc);  // as UTF-8
std::string BytesOf(const AEDesc& inDesc);

// UTF-8 as MacRoman, for replies that must not fail.
std::string MacRomanOf(const std::string& inUtf8);

}  // namespace recorder
