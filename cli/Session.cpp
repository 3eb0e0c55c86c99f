// Owns the opening and ending of a session.
#include "Session.h"

#include "Failure.h"
#include "vantor/api/Vantor.h"

namespace cli {

Session::Session() {
    const auto status = VantorInitiateSession();
    if (status != noErr) VantorTerminateSession();
    ThrowIfFailed(status, "start the recorder");
}

// A recorder that cannot be told goodbye is gone already: there is nothing left to undo.
Session::~Session() {
    VantorTerminateSession();
}

}  // namespace cli
