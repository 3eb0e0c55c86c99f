// Owns `vantor processes`: the programs that can send each other events, now or as they come and
// go.
#include <unistd.h>

#include <cstdio>
#include <map>

#include "Commands.h"
#include "Interrupt.h"
#include "Json.h"
#include "Output.h"
#include "vantor/process/UProcess.h"

namespace cli {
namespace {

constexpr useconds_t kLookEvery = 200'000;  // microseconds

struct Program {
    UInt64 number;
    pid_t pid;
    std::string signature, type, name;
};

UInt64 NumberOf(const ProcessSerialNumber& inPSN) {
    return UInt64{inPSN.highLongOfPSN} << 32 | inPSN.lowLongOfPSN;
}

pid_t PidOf(const ProcessSerialNumber& inPSN) {
    pid_t pid = 0;
    return GetProcessPID(&inPSN, &pid) == noErr ? pid : 0;
}

// In the order of their launches.
std::map<UInt64, Program> All() {
    std::map<UInt64, Program> all;
    ProcessSerialNumber psn = {0, kNoProcess};
    while (!UProcess::GetNextPSN(psn)) {
        SProcessInfo info;
        if (GetProcessInformation(&psn, info) != noErr) continue;  // gone since it was listed
        const UInt64 number = NumberOf(psn);
        all[number] = {number, PidOf(psn), Code(info.processSignature), Code(info.processType),
                       MacRomanText(info.processName)};
    }
    return all;
}

Json JsonOf(const Program& inProgram) {
    return {{"number", inProgram.number},
            {"pid", inProgram.pid},
            {"signature", inProgram.signature},
            {"type", inProgram.type},
            {"name", inProgram.name}};
}

void PrintHead(const char* inMark) {
    std::printf("%s%6s  %8s  %-4s  %-4s  %s\n", inMark, "NUMBER", "PID", "SIGN", "TYPE", "NAME");
}

void Print(const char* inMark, const Program& inProgram) {
    std::printf("%s%6llu  %8d  %-4s  %-4s  %s\n", inMark,
                static_cast<unsigned long long>(inProgram.number), inProgram.pid,
                inProgram.signature.c_str(), inProgram.type.c_str(), inProgram.name.c_str());
}

void Tell(const char* inMark, const char* inEvent, const Program& inProgram, bool inJson) {
    if (!inJson) {
        Print(inMark, inProgram);
        std::fflush(stdout);
        return;
    }
    Json json = {{"event", inEvent}};
    json.update(JsonOf(inProgram));
    PrintJson(json);
}

}  // namespace

void ShowProcesses(bool inJson) {
    Json all = Json::array();
    if (!inJson) PrintHead("");
    for (const auto& [number, program] : All())
        if (inJson)
            all.push_back(JsonOf(program));
        else
            Print("", program);
    if (inJson) PrintJson(all);
}

void WatchProcesses(bool inJson) {
    auto known = All();
    if (!inJson) PrintHead("  ");
    for (const auto& [number, program] : known) Tell("  ", "runs", program, inJson);
    for (; InterruptCount() == 0; usleep(kLookEvery)) {
        auto now = All();
        for (const auto& [number, program] : known)
            if (!now.contains(number)) Tell("- ", "ended", program, inJson);
        for (const auto& [number, program] : now)
            if (!known.contains(number)) Tell("+ ", "launched", program, inJson);
        known = std::move(now);
    }
}

}  // namespace cli
