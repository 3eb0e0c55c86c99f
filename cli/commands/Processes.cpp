// Owns `vantor processes`: the programs that can send each other events.
#include <cstdio>

#include "Commands.h"
#include "Json.h"
#include "Output.h"
#include "vantor/process/UProcess.h"

namespace cli {
namespace {

std::string NameOf(const SProcessInfo& inInfo) {
    CFStringRef string = CFStringCreateWithPascalString(kCFAllocatorDefault, inInfo.processName,
                                                        kCFStringEncodingMacRoman);
    char utf8[4 * 64] = "";
    CFStringGetCString(string, utf8, sizeof utf8, kCFStringEncodingUTF8);
    CFRelease(string);
    return utf8;
}

UInt64 NumberOf(const ProcessSerialNumber& inPSN) {
    return UInt64{inPSN.highLongOfPSN} << 32 | inPSN.lowLongOfPSN;
}

pid_t PidOf(const ProcessSerialNumber& inPSN) {
    pid_t pid = 0;
    return GetProcessPID(&inPSN, &pid) == noErr ? pid : 0;
}

}  // namespace

void ShowProcesses(bool inJson) {
    Json all = Json::array();
    ProcessSerialNumber psn = {0, kNoProcess};
    if (!inJson) std::printf("%6s  %8s  %-4s  %-4s  %s\n", "NUMBER", "PID", "SIGN", "TYPE", "NAME");
    while (!UProcess::GetNextPSN(psn)) {
        SProcessInfo info;
        if (GetProcessInformation(&psn, info) != noErr) continue;  // gone since it was listed
        const std::string signature = Code(info.processSignature), type = Code(info.processType);
        if (inJson)
            all.push_back({{"number", NumberOf(psn)},
                           {"pid", PidOf(psn)},
                           {"signature", signature},
                           {"type", type},
                           {"name", NameOf(info)}});
        else
            std::printf("%6llu  %8d  %-4s  %-4s  %s\n",
                        static_cast<unsigned long long>(NumberOf(psn)), PidOf(psn),
                        signature.c_str(), type.c_str(), NameOf(info).c_str());
    }
    if (inJson) PrintJson(all);
}

}  // namespace cli
