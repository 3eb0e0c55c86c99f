// A process for the tests to look at: registers, says which number it got, and obeys one-letter
// commands from its standard input until that closes.
//   n  does nothing but answer, so that the tester knows the peer still lives
//   c  answers with the number of processes it sees
//   r  calls up its own program in its place
//   e  calls up a shell in its place, which answers 77 and reads on
//   q  returns from main
//   x  calls ExitToShell
#include <Carbon/Processes.h>
#include <unistd.h>

#include <cstdio>

namespace {

int CountProcesses() {
    ProcessSerialNumber psn = {0, kNoProcess};
    int count = 0;
    while (GetNextProcess(&psn) == noErr) ++count;
    return count;
}

void CallUp(const char* inProgram, const char* inFlag, const char* inScript) {
    execl(inProgram, inProgram, inFlag, inScript, nullptr);
    std::perror(inProgram);
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
        if (command == 'r') CallUp("/proc/self/exe", nullptr, nullptr);
        if (command == 'e') CallUp("/bin/sh", "-c", "echo 77; read line");
        if (command == 'x') ExitToShell();
        if (command == 'c') Say(CountProcesses());
    }
    return 0;
}
