// Resources written down as text.
#pragma once

#include <Carbon/Carbon.h>

#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

struct DescribedResource {
    ResType type = 0;
    ResID id = 0;
    std::string name;  // MacRoman
    ResAttributes attributes = 0;
    std::string data;
};

// Its text tells the line and what is wrong there.
class MistakeInText : public std::runtime_error {
  public:
    MistakeInText(int inLine, const std::string& inWhat)
        : std::runtime_error(std::to_string(inLine) + ": " + inWhat) {}
};

// Every resource of a text, in its order. Throws MistakeInText.
std::vector<DescribedResource> ReadResourceText(std::istream& inText);
