// Owns the calls that make descriptors and events of text.
#include <Carbon/AEHelpers.h>

#include "apple_event_manager/text/build_parser.h"

namespace carbon {
namespace {

void Report(AEBuildError* outError, const AEBuildError& inError) {
    if (outError) *outError = inError;
}

// Runs a body that may fail at some place in the text.
template <typename Body>
OSStatus Building(AEBuildError* outError, Body inBody) {
    Report(outError, {aeBuildSyntaxNoErr, 0});
    try {
        inBody();
        return noErr;
    } catch (const BuildFailure& failure) {
        Report(outError, failure.error);
        return failure.result;
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
}

// What was read so far is never the caller's.
void BuildDesc(const char* inText, BuildArguments& ioArguments, AEDesc* outDesc) {
    TemporaryDesc desc;
    BuildParser(inText, &ioArguments).Whole(desc.Get());
    *outDesc = desc.Release();
}

void BuildParameters(const char* inText, BuildArguments& ioArguments, AppleEvent* ioEvent) {
    TemporaryDesc copy(ItemOf(*ioEvent));
    BuildParser(inText, &ioArguments).WholeParameters(*EventOf(copy.Get()));
    const AEDesc old = *ioEvent;
    *ioEvent = copy.Release();
    *copy.Get() = old;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

OSStatus vAEBuildDesc(AEDesc* dst, AEBuildError* error, const char* src, va_list args) {
    Report(error, {aeBuildSyntaxNoErr, 0});
    if (!dst) return paramErr;
    *dst = kNullDesc;
    if (!src) return paramErr;
    BuildArguments arguments(args);
    return Building(error, [&] { BuildDesc(src, arguments, dst); });
}

OSStatus AEBuildDesc(AEDesc* dst, AEBuildError* error, const char* src, ...) {
    va_list args;
    va_start(args, src);
    const OSStatus result = vAEBuildDesc(dst, error, src, args);
    va_end(args);
    return result;
}

OSStatus vAEBuildParameters(AppleEvent* event, AEBuildError* error, const char* format,
                            va_list args) {
    Report(error, {aeBuildSyntaxNoErr, 0});
    if (!event || !format) return paramErr;
    if (!EventOf(event)) return errAENotAEDesc;
    BuildArguments arguments(args);
    return Building(error, [&] { BuildParameters(format, arguments, event); });
}

OSStatus AEBuildParameters(AppleEvent* event, AEBuildError* error, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const OSStatus result = vAEBuildParameters(event, error, format, args);
    va_end(args);
    return result;
}

OSStatus vAEBuildAppleEvent(AEEventClass theClass, AEEventID theID, DescType addressType,
                            const void* addressData, Size addressLength, SInt16 returnID,
                            SInt32 transactionID, AppleEvent* resultEvt, AEBuildError* error,
                            const char* paramsFmt, va_list args) {
    Report(error, {aeBuildSyntaxNoErr, 0});
    if (!resultEvt) return paramErr;
    *resultEvt = kNullDesc;
    TemporaryDesc target;
    OSStatus result = AECreateDesc(addressType, addressData, addressLength, target.Get());
    if (result == noErr)
        result = AECreateAppleEvent(theClass, theID, &*target, returnID, transactionID, resultEvt);
    if (result == noErr && paramsFmt)
        result = vAEBuildParameters(resultEvt, error, paramsFmt, args);
    if (result != noErr) AEDisposeDesc(resultEvt);
    return result;
}

OSStatus AEBuildAppleEvent(AEEventClass theClass, AEEventID theID, DescType addressType,
                           const void* addressData, Size addressLength, SInt16 returnID,
                           SInt32 transactionID, AppleEvent* result, AEBuildError* error,
                           const char* paramsFmt, ...) {
    va_list args;
    va_start(args, paramsFmt);
    const OSStatus status =
        vAEBuildAppleEvent(theClass, theID, addressType, addressData, addressLength, returnID,
                           transactionID, result, error, paramsFmt, args);
    va_end(args);
    return status;
}
