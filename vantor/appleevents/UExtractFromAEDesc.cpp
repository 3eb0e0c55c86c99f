// Reading descriptors, coercing first where the type is another.
#include "vantor/appleevents/UExtractFromAEDesc.h"

#include <algorithm>

#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"
#include "vantor/foundation/StHandle.h"

namespace {

// A descriptor as another type, without copying one that has it already.
class StCoerced {
  public:
    StCoerced(const AEDesc& inDesc, DescType inType) : mSource(&inDesc) {
        if (inDesc.descriptorType == inType) return;
        // Kept: whatever the coercion's own error was.
        if (AECoerceDesc(&inDesc, inType, mCoerced) != noErr) LException::Throw(errAETypeError);
        mSource = mCoerced;
    }
    StCoerced(const StCoerced&) = delete;
    StCoerced& operator=(const StCoerced&) = delete;
    operator const AEDesc*() const { return mSource; }

  private:
    StAEDescriptor mCoerced;
    const AEDesc* mSource;
};

}  // namespace

void UExtractFromAEDesc::TheData(const AEDesc& inDesc, DescType inType, void* outData,
                                 Size inMaxSize) {
    ThrowIfError(::AEGetDescData(StCoerced(inDesc, inType), outData, inMaxSize));
}

void UExtractFromAEDesc::TheSInt32(const AEDesc& inDesc, SInt32& outValue) {
    SInt32 value = 0;
    TheData(inDesc, typeSInt32, &value, sizeof value);
    outValue = NativeFromBigEndian(value);
}

void UExtractFromAEDesc::TheBoolean(const AEDesc& inDesc, Boolean& outValue) {
    TheData(inDesc, typeBoolean, &outValue, sizeof outValue);
}

void UExtractFromAEDesc::ThePString(const AEDesc& inDesc, StringPtr outString, SInt32 inMaxLength) {
    const StCoerced text(inDesc, typeChar);
    // Kept: longer text is cut and nobody is told.
    const Size length = std::min(::AEGetDescDataSize(text), inMaxLength - 1);
    outString[0] = static_cast<unsigned char>(length);
    ThrowIfError(::AEGetDescData(text, outString + 1, length));
}

void UExtractFromAEDesc::TheAlias(const AEDesc& inDesc, AliasHandle& outAlias) {
    const StCoerced alias(inDesc, typeAlias);
    const Size size = ::AEGetDescDataSize(alias);
    const Handle handle = NewHandle(size);
    outAlias = reinterpret_cast<AliasHandle>(handle);
    if (handle == nullptr) ThrowMemoryError();
    StHandleLocker lock(handle);
    ThrowIfError(::AEGetDescData(alias, *handle, size));
}

OSErr UExtractFromAEDesc::AEGetDescData(const AEDesc& inDesc, void* outData, Size inMaxSize) {
    return ::AEGetDescData(&inDesc, outData, inMaxSize);
}

Size UExtractFromAEDesc::AEGetDescDataSize(const AEDesc& inDesc) {
    return ::AEGetDescDataSize(&inDesc);
}
