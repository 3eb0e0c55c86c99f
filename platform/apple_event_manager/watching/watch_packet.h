// One packet from a program that is watched, received without trust and without waiting.
#pragma once

#include "apple_event_manager/data/buffer.h"
#include "apple_event_manager/watching/watch_frame.h"

namespace carbon {

//   kNothing  none is there now
//   kOver     the other end is gone, or what it sent keeps no rule
enum class WatchPacketResult { kNothing, kOver, kReceived };

WatchPacketResult ReceiveWatchPacket(int inSocket, WatchHeader* outHeader, Buffer* outBytes);

}  // namespace carbon
