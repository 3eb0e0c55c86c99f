// Owns the text sink and the exit hook.
#include "system_services/hooks.h"

#include <Platform/Platform.h>

#include <cstdio>
#include <cstdlib>

#include "posix/across_forks.h"

namespace carbon {
namespace {

constinit Hook<PlatformTextSink> gTextSink;
constinit Hook<PlatformExitHook> gExitHook;
const HeldAcrossForks sHeldSink(gTextSink.Guard()), sHeldExit(gExitHook.Guard());

}  // namespace

void WriteText(const std::string& inText) {
    const auto [sink, context] = gTextSink.Get();
    if (sink)
        sink(inText.c_str(), context);
    else
        std::fputs(inText.c_str(), stderr);
}

void LeaveProgram() {
    const auto [hook, context] = gExitHook.Get();
    if (!hook) std::exit(0);
    hook(context);
}

}  // namespace carbon

void PlatformSetTextSink(PlatformTextSink sink, void* context) {
    carbon::gTextSink.Set(sink, context);
}

void PlatformSetExitHook(PlatformExitHook hook, void* context) {
    carbon::gExitHook.Set(hook, context);
}
