// Owns `vantor launch` and `vantor quit`.
#include <cstdio>

#include "Commands.h"
#include "Failure.h"
#include "Json.h"
#include "Message.h"
#include "Target.h"

namespace cli {
namespace {

OSStatus Start(const FSRef& inBundle, ProcessSerialNumber* outNumber) {
    constexpr UInt32 kBlockLength = 32;
    FSSpec spec;
    const OSStatus status =
        FSGetCatalogInfo(&inBundle, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr);
    if (status != noErr) return status;
    LaunchParamBlockRec block = {};
    block.launchBlockID = extendedBlock;
    block.launchEPBLength = kBlockLength;
    block.launchControlFlags = launchContinue | launchNoFileFlags;
    block.launchAppSpec = &spec;
    const OSErr result = LaunchApplication(&block);
    *outNumber = block.launchProcessSN;
    return result;
}

void Tell(const ProcessSerialNumber& inNumber, const char* inWhat, bool inJson) {
    const std::string program = Described(inNumber);
    if (!inJson) {
        std::printf("%s %s.\n", program.c_str(), inWhat);
        return;
    }
    pid_t pid = 0;
    GetProcessPID(&inNumber, &pid);
    PrintJson({{"pid", pid}, {"program", program}, {"state", inWhat}});
}

}  // namespace

void Launch(const std::string& inApplication, bool inJson) {
    if (const auto running = FindTarget(inApplication)) return Tell(*running, "runs", inJson);
    FSRef bundle;
    ProcessSerialNumber number = {0, kNoProcess};
    if (const OSStatus status = FindInstalled(inApplication, &bundle); status != noErr)
        throw Failure("There is no application '" + inApplication + "'", status,
                      status == fnfErr ? kBadSource : kFailed);
    if (const OSStatus status = Start(bundle, &number); status != noErr)
        throw Failure("The application '" + inApplication + "' could not be started", status);
    if (pid_t pid = 0; GetProcessPID(&number, &pid) != noErr)
        throw Failure("The application '" + inApplication + "' was started, and ended at once",
                      procNotFound);
    Tell(number, "was started", inJson);
}

void Quit(const std::string& inTarget, bool inJson) {
    const ProcessSerialNumber number = TargetNamed(inTarget);
    const std::string program = Described(number);
    StAEDescriptor event, reply;
    MakeEvent(number, kCoreEventClass, kAEQuitApplication, event);
    Send(event, {}, reply);
    ThrowIfRefused(reply);
    if (inJson)
        PrintJson({{"program", program}, {"state", "quits"}});
    else
        std::printf("%s quits.\n", program.c_str());
}

}  // namespace cli
