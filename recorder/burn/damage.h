// Which file suffers from a damaged place on a disc.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

namespace recorder {

class Recording;

// "the file /a/b", "the directories or the space between files"; from the disc itself, as far as it
// can still be read.
std::string WhatLiesAt(Recording& inRecording, UInt64 inDiscSize, UInt64 inOffset, UInt64 inLength);

}  // namespace recorder
