// Which file suffers from a damaged place on a disc.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

namespace recorder {

class Recording;
struct JobContext;

// "the file /a/b", "the directories or the space between files"; from the disc itself, as far as it
// can still be read. BurnCancelled when the job is to stop.
std::string WhatLiesAt(Recording& inRecording, const JobContext& inContext, UInt64 inDiscSize,
                       UInt64 inOffset, UInt64 inLength);

}  // namespace recorder
