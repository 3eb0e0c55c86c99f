// A process for the tests to look at: registers, says which number it got, and obeys one-letter
// commands from its standard input until that closes.
//   n  does nothing but answer, so that the tester knows the peer still lives
//   c  answers with the number of processes it sees
//   q  returns from main
//   x  calls ExitToShell
#include <Carbon/Processes.h>

#include <cstdio>

namespace {

int CountProcesses() {
    ProcessSerialNumber psn = {0, kNoProcess};
    int count = 0;
    while (GetNextProcess(&psn) == noErr) ++count;
    return count;
}

void Say(int inNumber) {
    std::printf("%d\n", inNumber);
    std::fflush(stdout);
}

}  // namespace

int main() {
    ProcessSerialNumber psn = {};
    const OSErr err = GetCurrentProcess(&psn);
    Say(err == noErr ? int(psn.lowLongOfPSN) : err);
    if (err != noErr) return 1;
    for (int command = std::getchar(); command != EOF && command != 'q'; command = std::getchar()) {
        if (command == 'n') Say(0);
        if (command == 'x') ExitToShell();
        if (command == 'c') Say(CountProcesses());
    }
    return 0;
}
