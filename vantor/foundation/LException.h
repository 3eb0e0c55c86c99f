// The one exception class of the library.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Carries a result code (a system code, or one of the library's own from -11003 to -11000) and an
// optional message of up to 255 characters in MacRoman. Thrown by value, caught by reference.
class VANTOR_EXPORT LException {
  public:
    // `inMessage` is a Pascal string and is copied; null means an empty message.
    LException(SInt32 inErrorCode, ConstStringPtr inMessage);
    LException(const LException& inOther);
    LException& operator=(const LException& inOther);
    virtual ~LException();

    SInt32 GetErrorCode() const { return mErrorCode; }
    void SetErrorCode(SInt32 inErrorCode) { mErrorCode = inErrorCode; }
    void SetErrorString(ConstStringPtr inMessage);

    // The message as a C string, valid until the exception is changed or destroyed. A message of
    // 255 characters loses its last one.
    virtual const char* what() const;

    [[noreturn]] static void Throw(SInt32 inErrorCode);
    [[noreturn]] static void Throw(SInt32 inErrorCode, ConstStringPtr inMessage);

  protected:
    SInt32 mErrorCode;
    mutable Str255 mErrorString;
};

// Throws a result code that is not noErr, unchanged. For use right at the call: ThrowIfError(F(x));
inline void ThrowIfError(SInt32 inResult) {
    if (inResult != noErr) LException::Throw(inResult);
}

// Throws for a block that could not be had: MemError(), or -108 where that reports no error.
[[noreturn]] VANTOR_EXPORT void ThrowMemoryError();

// Throws for a resource that could not be had: ResError(), or -192 where that reports no error.
[[noreturn]] VANTOR_EXPORT void ThrowResourceError();
