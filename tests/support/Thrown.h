// The code of the LException that something throws.
#pragma once

#include <optional>

#include "vantor/foundation/LException.h"

// Empty when nothing is thrown; other exceptions pass through.
template <typename Operation>
std::optional<SInt32> CodeThrownBy(Operation inOperation) {
    try {
        inOperation();
    } catch (const LException& exception) {
        return exception.GetErrorCode();
    }
    return std::nullopt;
}
