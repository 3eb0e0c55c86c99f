// Asking for the answer to an alert where there is a terminal but no screen.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

namespace carbon {

// The items that an alert offers.
enum AlertItem : SInt16 {
    kContinueItem = 1,
    kQuitItem = 4,
    kDebuggerItem = 5,
    kStopShowingItem = 6
};

// Prints the text and the choices on one descriptor and reads lines from the other until one names
// an item, by its number or first letter. An empty line, or the end of the input, continues.
SInt16 AskOnTerminal(int inInput, int inOutput, const std::string& inText);

}  // namespace carbon
