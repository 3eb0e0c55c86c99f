// The owned descriptor: which type each value becomes, and how parameters are fetched.
#include "vantor/appleevents/StAEDescriptor.h"

#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

StAEDescriptor::StAEDescriptor() {
    InitToNull();
}

StAEDescriptor::StAEDescriptor(const StAEDescriptor& inOther) {
    InitToNull();
    ThrowIfError(AEDuplicateDesc(inOther, &mDesc));
}

StAEDescriptor::StAEDescriptor(DescType inType, const void* inData, Size inSize) {
    InitToNull();
    ThrowIfError(AECreateDesc(inType, inData, inSize, &mDesc));
}

StAEDescriptor::StAEDescriptor(Boolean inValue) {
    InitToNull();
    Assign(inValue);
}

StAEDescriptor::StAEDescriptor(SInt16 inValue) {
    InitToNull();
    Assign(inValue);
}

StAEDescriptor::StAEDescriptor(SInt32 inValue) {
    InitToNull();
    Assign(inValue);
}

StAEDescriptor::StAEDescriptor(OSType inValue) {
    InitToNull();
    Assign(inValue);
}

StAEDescriptor::StAEDescriptor(ConstStringPtr inText) {
    InitToNull();
    Assign(inText);
}

StAEDescriptor::StAEDescriptor(const FSSpec& inSpec) {
    InitToNull();
    Assign(inSpec);
}

StAEDescriptor::StAEDescriptor(const AEDesc& inDesc, AEKeyword inKeyword, DescType inDesiredType) {
    InitToNull();
    if (inDesc.descriptorType == typeNull) return;
    if (inDesc.descriptorType == typeAppleEvent || inDesc.descriptorType == typeAERecord) {
        // Kept: a parameter that is missing or cannot be coerced leaves null, and nobody is told.
        if (AEGetParamDesc(&inDesc, inKeyword, inDesiredType, &mDesc) != noErr) InitToNull();
        return;
    }
    FetchFromCoerced(inDesc, inKeyword, inDesiredType);
}

StAEDescriptor::~StAEDescriptor() {
    if (mDesc.dataHandle != nullptr) AEDisposeDesc(&mDesc);
}

StAEDescriptor& StAEDescriptor::Assign(const StAEDescriptor& inOther) {
    if (this == &inOther) return *this;
    Dispose();
    ThrowIfError(AEDuplicateDesc(inOther, &mDesc));
    return *this;
}

StAEDescriptor& StAEDescriptor::Assign(Boolean inValue) {
    return AssignData(typeBoolean, &inValue, sizeof inValue);
}

StAEDescriptor& StAEDescriptor::Assign(SInt16 inValue) {
    inValue = BigEndianFromNative(inValue);
    return AssignData(typeSInt16, &inValue, sizeof inValue);
}

StAEDescriptor& StAEDescriptor::Assign(SInt32 inValue) {
    inValue = BigEndianFromNative(inValue);
    return AssignData(typeSInt32, &inValue, sizeof inValue);
}

StAEDescriptor& StAEDescriptor::Assign(OSType inValue) {
    inValue = BigEndianFromNative(inValue);
    return AssignData(typeType, &inValue, sizeof inValue);
}

StAEDescriptor& StAEDescriptor::Assign(ConstStringPtr inText) {
    return AssignData(typeChar, &inText[1], inText[0]);
}

StAEDescriptor& StAEDescriptor::Assign(const FSSpec& inSpec) {
    const FSSpec spec = BigEndianFromNative(inSpec);
    return AssignData(typeFSS, &spec, sizeof spec);
}

void StAEDescriptor::Dispose() {
    if (mDesc.dataHandle == nullptr) return;
    AEDisposeDesc(&mDesc);
    InitToNull();
}

void StAEDescriptor::GetParamDesc(const AEDesc& inDesc, AEKeyword inKeyword,
                                  DescType inDesiredType) {
    Dispose();
    ThrowIfError(AEGetParamDesc(&inDesc, inKeyword, inDesiredType, &mDesc));
}

void StAEDescriptor::GetOptionalParamDesc(const AEDesc& inDesc, AEKeyword inKeyword,
                                          DescType inDesiredType) {
    Dispose();
    const OSErr error = AEGetParamDesc(&inDesc, inKeyword, inDesiredType, &mDesc);
    if (error != errAEDescNotFound) ThrowIfError(error);
}

void StAEDescriptor::InitToNull() {
    mDesc.descriptorType = typeNull;
    mDesc.dataHandle = nullptr;
}

StAEDescriptor& StAEDescriptor::AssignData(DescType inType, const void* inData, Size inSize) {
    Dispose();
    ThrowIfError(AECreateDesc(inType, inData, inSize, &mDesc));
    return *this;
}

void StAEDescriptor::FetchFromCoerced(const AEDesc& inDesc, AEKeyword inKeyword,
                                      DescType inDesiredType) {
    StAEDescriptor record;
    ThrowIfError(AECoerceDesc(&inDesc, typeAERecord, record));
    const OSErr error = AEGetParamDesc(record, inKeyword, inDesiredType, &mDesc);
    if (error != errAEDescNotFound) ThrowIfError(error);
}
