// Typed values out of descriptors.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// A descriptor of another type is coerced first; one that cannot be is answered with errAETypeError
// (-10001), thrown as LException like every other failure.
class VANTOR_EXPORT UExtractFromAEDesc {
  public:
    // The bytes as they are, big-endian, at most `inMaxSize` of them.
    static void TheData(const AEDesc& inDesc, DescType inType, void* outData, Size inMaxSize);
    static void TheSInt32(const AEDesc& inDesc, SInt32& outValue);
    static void TheBoolean(const AEDesc& inDesc, Boolean& outValue);
    // `inMaxLength` is the size of the buffer with its length byte, 256 for a Str255. Longer text
    // is cut without a word.
    static void ThePString(const AEDesc& inDesc, StringPtr outString, SInt32 inMaxLength);
    // The caller owns the new handle, also when copying into it throws.
    static void TheAlias(const AEDesc& inDesc, AliasHandle& outAlias);

    // The platform's calls of these names, results and all: nothing is thrown.
    static OSErr AEGetDescData(const AEDesc& inDesc, void* outData, Size inMaxSize);
    static Size AEGetDescDataSize(const AEDesc& inDesc);
};
