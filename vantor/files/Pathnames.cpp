// Taking names apart, without asking anybody about them.
#include <algorithm>

#include "vantor/files/Locations.h"

OSErr GetFilenameFromPathname(ConstStr255Param inPath, StringPtr outName) {
    outName[0] = 0;
    if (inPath == nullptr || inPath[0] == 0) return notAFileErr;
    const bool endsInColon = inPath[inPath[0]] == ':';
    const int end = endsInColon ? inPath[0] - 1 : inPath[0];
    if (inPath[end] == ':' || end == 0) return notAFileErr;
    int before = end;
    while (before > 0 && inPath[before] != ':') --before;
    if (before == 0 && endsInColon) return notAFileErr;  // a volume
    outName[0] = UInt8(end - before);
    std::copy(&inPath[before + 1], &inPath[end + 1], &outName[1]);
    return noErr;
}

namespace {

// Whether a text may be cut behind its `inLength`th byte.
bool EndsWhole(ConstStr255Param inText, SInt16 inLength) {
    const Ptr text = reinterpret_cast<Ptr>(const_cast<StringPtr>(inText + 1));
    const SInt16 last = CharacterByteType(text, SInt16(inLength - 1), smCurrentScript);
    return last == smSingleByte || last == smLastByte;
}

SInt16 WholeLength(ConstStr255Param inText, SInt16 inMaximum) {
    SInt16 length = std::max<SInt16>(inMaximum, 0);
    while (length > 0 && !EndsWhole(inText, length)) --length;
    return length;
}

}  // namespace

void TruncPString(StringPtr outDestination, ConstStr255Param inSource, SInt16 inMaximum) {
    if (outDestination == nullptr || inSource == nullptr) return;
    const SInt16 length =
        inSource[0] <= inMaximum ? SInt16{inSource[0]} : WholeLength(inSource, inMaximum);
    std::copy_backward(&inSource[1], &inSource[1 + length], &outDestination[1 + length]);
    outDestination[0] = UInt8(length);
}
