// Pascal strings for tests: made from literals, read as std::string.
#pragma once

#include <Carbon/Carbon.h>

#include <cstring>
#include <string>

class PString {
  public:
    PString(const std::string& inText) {
        mBytes[0] = static_cast<unsigned char>(inText.size());
        std::memcpy(&mBytes[1], inText.data(), mBytes[0]);
    }
    PString(const char* inText) : PString(std::string(inText)) {}
    operator ConstStringPtr() const { return mBytes; }

  private:
    Str255 mBytes = {};
};

inline std::string TextOf(ConstStringPtr inString) {
    return std::string(reinterpret_cast<const char*>(&inString[1]), inString[0]);
}
