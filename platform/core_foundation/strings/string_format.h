// Texts with values put in.
#pragma once

#include <locale.h>

#include <cstdarg>
#include <string>
#include <string_view>

namespace carbon {

// inFormat with the arguments put in, as CFStringCreateWithFormat describes it.
std::u16string Format(std::u16string_view inFormat, va_list inArguments);

// The C locale, in which numbers are read and written whatever the process uses.
locale_t NeutralLocale();

}  // namespace carbon
