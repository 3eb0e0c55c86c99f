// Owns the way into the debugger.
#include <Carbon/MacTypes.h>
#include <Platform/Platform.h>

#include "posix/across_forks.h"
#include "system_services/hooks.h"
#include "system_services/pascal_text.h"

namespace carbon {
namespace {

constinit Hook<PlatformDebuggerHook> gDebuggerHook;
const HeldAcrossForks sHeld(gDebuggerHook.Guard());

constexpr UInt8 kNoText[] = {0};

// Linux: no debugger waits below every program, so the text is all there is to see.
void EnterDebugger(const char* inCall, ConstStr255Param inText) {
    const auto [hook, context] = gDebuggerHook.Get();
    if (hook) return hook(inText, context);
    const std::string text = Utf8FromPascal(inText);
    WriteText(text.empty() ? std::string(inCall) + '\n' : inCall + (": " + text + '\n'));
}

}  // namespace
}  // namespace carbon

void Debugger(void) {
    carbon::EnterDebugger("Debugger", carbon::kNoText);
}

void DebugStr(ConstStr255Param debuggerMsg) {
    carbon::EnterDebugger("DebugStr", debuggerMsg ? debuggerMsg : carbon::kNoText);
}

void PlatformSetDebuggerHook(PlatformDebuggerHook hook, void* context) {
    carbon::gDebuggerHook.Set(hook, context);
}
