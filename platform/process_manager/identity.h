// What a program is: the facts under which it appears in the table.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

namespace carbon {

constexpr OSType kUnknownCode = 0x3F3F3F3F;  // four question marks

struct Program {
    std::string executable;  // absolute, links resolved
    std::string bundle;      // the folder it belongs to; empty without one
    std::string fullName;    // UTF-8
    OSType type = 'APPL';
    OSType signature = kUnknownCode;
    UInt32 mode = 0;  // the mode flags of Processes.h
};

// The program at a path, as its enclosing bundle describes it, else as its Finder information does.
Program ProgramOfExecutable(const std::string& inExecutable);

// The bundle at a path. `executable` is empty when the bundle has no program.
Program ProgramOfBundle(const std::string& inBundle);

// The bundle whose program folder this file lies in; empty when there is none.
std::string EnclosingBundle(const std::string& inExecutable);

// The calling program.
Program OwnProgram();

// A name as it stands in the table: MacRoman, at most 31 characters, '?' for what does not fit.
void ShortName(const std::string& inFullName, Str63 outName);

}  // namespace carbon
