// An application for the tests to launch: writes down each Apple event it gets, "class id" a line,
// into the file that LAUNCH_PEER_LOG names, and leaves when asked to quit.
#include <Carbon/Carbon.h>

#include <cstdlib>
#include <fstream>

namespace {

std::string Code(UInt32 inCode) {
    return {char(inCode >> 24), char(inCode >> 16), char(inCode >> 8), char(inCode)};
}

UInt32 Attribute(const AppleEvent* inEvent, AEKeyword inKey) {
    OSType code = 0;
    AEGetAttributePtr(inEvent, inKey, typeType, nullptr, &code, sizeof code, nullptr);
    return EndianU32_BtoN(code);
}

OSErr WriteDown(const AppleEvent* inEvent, AppleEvent*, SInt32) {
    const UInt32 id = Attribute(inEvent, keyEventIDAttr);
    std::ofstream(std::getenv("LAUNCH_PEER_LOG"), std::ios::app)
        << Code(Attribute(inEvent, keyEventClassAttr)) << ' ' << Code(id) << std::endl;
    if (id == kAEQuitApplication) QuitApplicationEventLoop();
    return noErr;
}

}  // namespace

int main() {
    AEInstallEventHandler(typeWildCard, typeWildCard, NewAEEventHandlerUPP(WriteDown), 0, false);
    RunApplicationEventLoop();
    return 0;
}
