// A program that watches the user's events until it is ended.
//
// Prints the low word of its serial number once it watches.
#include <Carbon/Carbon.h>
#include <Platform/Monitor.h>

#include <cstdio>

int main() {
    PlatformMonitorRef monitor = nullptr;
    ProcessSerialNumber self;
    if (PlatformMonitorOpen(&monitor) != noErr || GetCurrentProcess(&self) != noErr) return 1;
    std::printf("%u\n", self.lowLongOfPSN);
    std::fflush(stdout);
    for (;;) {
        PlatformWatchedEvent event;
        if (PlatformMonitorNext(monitor, 1000, &event) == noErr) AEDisposeDesc(&event.event);
    }
}
