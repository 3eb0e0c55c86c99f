// Owns `vantor processes`: the programs that can send each other events.
#include <cstdio>

#include "Commands.h"
#include "Json.h"
#include "Output.h"
#include "vantor/process/UProcess.h"

namespace cli {
namespace {

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
                           {"name", MacRomanText(info.processName)}});
        else
            std::printf("%6llu  %8d  %-4s  %-4s  %s\n",
                        static_cast<unsigned long long>(NumberOf(psn)), PidOf(psn),
                        signature.c_str(), type.c_str(), MacRomanText(info.processName).c_str());
    }
    if (inJson) PrintJson(all);
}

}  // namespace cli
