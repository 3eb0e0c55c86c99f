// Turns exceptions into codes, for the exported calls and for them alone.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/controller/CVantor.h"
#include "vantor/foundation/LException.h"

// 0, or what was thrown as a code.
template <typename Operation>
SInt32 Status(Operation inOperation) noexcept {
    try {
        inOperation();
        return noErr;
    } catch (const LException& exception) {
        return exception.GetErrorCode();
    } catch (...) {
        return kVantorForeignException;
    }
}

// The same, storing the operation's result when it returned one and the pointer is not null.
template <typename Result, typename Operation>
SInt32 StatusWithResult(Result* outResult, Operation inOperation) noexcept {
    return Status([&] {
        const Result result = inOperation();
        if (outResult != nullptr) *outResult = result;
    });
}

// The operation's answer; false or null when it threw anything.
template <typename Operation>
auto Answer(Operation inOperation) noexcept -> decltype(inOperation()) {
    decltype(inOperation()) answer{};
    Status([&] { answer = inOperation(); });
    return answer;
}

// A negative outcome of a blank-disc request is its status too.
template <typename Operation>
SInt32 BlankDiscStatus(SInt32* outInfo, Operation inOperation) noexcept {
    SInt32 info = 0;
    const SInt32 status = Status([&] { info = inOperation(); });
    if (status == kMirelNoMedia) info = -2;  // Kept: nothing here raises this code.
    if (outInfo != nullptr && (status == noErr || status == kMirelNoMedia)) *outInfo = info;
    return status == noErr && info < 0 ? info : status;
}

// Takes a text that nobody wants to see.
struct ScratchText {
    Str255 mBytes;
};
