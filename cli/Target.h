// Programs as people name them: by PID, number, path, signature or name; running or installed.
#pragma once

#include <Carbon/Carbon.h>

#include <optional>
#include <string>

namespace cli {

// The running program that this word means: a path of its bundle or file, a PID, a number as
// `vantor processes` lists it, a signature, a name in any case; the first that fits, in this
// order. Nothing when none runs.
std::optional<ProcessSerialNumber> FindTarget(const std::string& inWord);

// The same; throws a Failure when none runs.
ProcessSerialNumber TargetNamed(const std::string& inWord);

// Whether a program of this number and name, which may have ended, is one that the word means.
bool IsTarget(const std::string& inWord, const ProcessSerialNumber& inNumber,
              const std::string& inName);

// The installed application of a path, a signature or a name. kLSApplicationNotFoundErr, or the
// File Manager's code for a path where nothing is.
OSStatus FindInstalled(const std::string& inWord, FSRef* outBundle);

// The path of the bundle, or of the program file, of what runs under this word or else is
// installed. A path is taken as it is. Nothing when there is no such application.
std::optional<std::string> FindApplication(const std::string& inWord);

// The same of a running program; nothing when it has ended.
std::optional<std::string> PathOf(const ProcessSerialNumber& inTarget);

// "Calverin (PID 123)".
std::string Described(const ProcessSerialNumber& inTarget);

// "Calverin"; "A program" for one that has ended.
std::string NameOf(const ProcessSerialNumber& inTarget);

}  // namespace cli
