// The exception class: copying its Pascal string, and handing it out as a C string.
#include "vantor/foundation/LException.h"

#include <algorithm>
#include <cstring>

LException::LException(SInt32 inErrorCode, ConstStringPtr inMessage) : mErrorCode(inErrorCode) {
    SetErrorString(inMessage);
}

LException::LException(const LException& inOther) : mErrorCode(inOther.mErrorCode) {
    SetErrorString(inOther.mErrorString);
}

LException& LException::operator=(const LException& inOther) {
    mErrorCode = inOther.mErrorCode;
    SetErrorString(inOther.mErrorString);
    return *this;
}

LException::~LException() = default;

void LException::SetErrorString(ConstStringPtr inMessage) {
    if (inMessage == mErrorString) return;
    mErrorString[0] = 0;
    if (inMessage != nullptr) std::memcpy(mErrorString, inMessage, inMessage[0] + 1u);
}

const char* LException::what() const {
    // Kept: the zero of a 255-character message takes the place of its last character.
    mErrorString[std::min(mErrorString[0] + 1, 255)] = 0;
    return reinterpret_cast<const char*>(&mErrorString[1]);
}

void LException::Throw(SInt32 inErrorCode) {
    throw LException(inErrorCode, nullptr);
}

void LException::Throw(SInt32 inErrorCode, ConstStringPtr inMessage) {
    throw LException(inErrorCode, inMessage);
}

void ThrowMemoryError() {
    const OSErr error = MemError();
    LException::Throw(error != noErr ? error : SInt32{memFullErr});
}

void ThrowResourceError() {
    const OSErr error = ResError();
    LException::Throw(error != noErr ? error : SInt32{resNotFound});
}
