// Owns `vantor status`: what the recorder is doing, without starting it.
#include <cstdio>

#include "Commands.h"
#include "Failure.h"
#include "Json.h"
#include "Recorder.h"
#include "vantor/api/Vantor.h"

namespace cli {

void ShowStatus(bool inJson) {
    if (!VantorIsMirelRunning()) {
        if (inJson)
            PrintJson({{"running", false}});
        else
            std::printf("The recorder is not running.\n");
        return;
    }
    SInt32 code = 0;
    ThrowIfFailed(VantorGetStatusCode(&code), "read the status");
    const std::string text = GetText(kDisc, 'sTxt');
    const bool busy = VantorIsMirelBusy();
    if (inJson)
        PrintJson({{"running", true}, {"busy", busy}, {"code", code}, {"text", text}});
    else
        std::printf("%s: %s [%d]\n", busy ? "Busy" : "Idle", text.c_str(), code);
}

}  // namespace cli
