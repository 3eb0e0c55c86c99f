// What stops in the debugger while this object lives.
#pragma once

#include <Platform/Platform.h>

#include <string>
#include <vector>

#include "support/PascalString.h"

class DebuggerTexts {
  public:
    using List = std::vector<std::string>;

    DebuggerTexts() {
        PlatformSetDebuggerHook(
            [](ConstStr255Param text, void* list) {
                static_cast<List*>(list)->push_back(TextOf(text));
            },
            &mTexts);
    }
    ~DebuggerTexts() { PlatformSetDebuggerHook(nullptr, nullptr); }
    DebuggerTexts(const DebuggerTexts&) = delete;
    DebuggerTexts& operator=(const DebuggerTexts&) = delete;

    const List& Texts() const { return mTexts; }

  private:
    List mTexts;
};
