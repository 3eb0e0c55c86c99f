// What one process takes from another, the same on both sides of a connection.
#pragma once

#include <Carbon/MacTypes.h>

namespace carbon {

constexpr Size kMaximumMessageSize = 32 << 20;  // bytes of one flattened event
constexpr int kMaximumNesting = 32;             // lists and records within one another
constexpr int kMaximumPendingReplies = 128;     // answers outstanding on one connection
constexpr int kMaximumConnections = 256;        // peers of one process, both directions
constexpr int kMaximumObituaries = 1024;        // notices of ended processes, not yet taken
constexpr int kStartUpSeconds = 10;             // from launch to the open socket

}  // namespace carbon
