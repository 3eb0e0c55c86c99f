// One directive of a format: what stands between '%' and its letter.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace carbon {

// What a directive takes from the argument list.
enum class ArgumentType { kNone, kInt, kLong, kLongLong, kDouble, kPointer };

// A width or precision: a number of its own, or an argument (counted from 0).
struct FormatNumber {
    int value = -1;  // -1: not given
    int argument = -1;
};

struct Directive {
    size_t start = 0, end = 0;  // where it stands in the format
    char16_t letter = 0;
    bool left = false, plus = false, space = false, zero = false;
    FormatNumber width, precision;
    int shortness = 0;  // 1 for h, 2 for hh
    ArgumentType type = ArgumentType::kNone;
    int argument = -1;  // which one, counted from 0
};

// All directives of a format, their arguments numbered.
std::vector<Directive> ParseFormat(std::u16string_view inFormat);

// The type of each argument the directives use.
std::vector<ArgumentType> ArgumentTypes(const std::vector<Directive>& inDirectives);

}  // namespace carbon
