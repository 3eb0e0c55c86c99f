// Owns the table of properties.
#include "handlers/properties.h"

#include <algorithm>
#include <array>

#include "disc/RecorderState.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

constexpr const char* kName = "Calverin";
constexpr const char* kVersion = "7.5";
constexpr size_t kLongestStatusText = 255;

using Out = StAEDescriptor&;

struct Property {
    DescType objectClass, code;
    void (*get)(RecorderState&, const Object&, Out);
    void (*set)(RecorderState&, const AEDesc&);  // null: read only
};

OSType PhaseCode(Phase inPhase) {
    constexpr std::array<OSType, 8> kCodes = {'idle', 'prep', 'writ', 'veri',
                                              'clos', 'done', 'canc', 'fail'};
    return kCodes[size_t(inPhase)];
}

bool IsInFront() {
    ProcessSerialNumber front = {}, own = {};
    Boolean same = false;
    return GetFrontProcess(&front) == noErr && GetCurrentProcess(&own) == noErr &&
           SameProcess(&front, &own, &same) == noErr && same;
}

// Old hosts ask without naming a type and take what comes for a Pascal string: MacRoman, no longer
// than one.
void MakeStatusText(const std::string& inUtf8, Out outText) {
    StAEDescriptor utf8;
    MakeText(inUtf8, utf8);
    const std::string whole = MacRomanOf(inUtf8);
    if (whole.size() <= kLongestStatusText) return MakeText(inUtf8, outText);
    ConvertTo(typePString, utf8);
    ConvertTo(typeChar, utf8);
    ConvertTo(typeUTF8Text, utf8);
    std::swap(outText.mDesc, utf8.mDesc);
}

const DriveInfo& Drive(RecorderState& inState, const Object& inObject) {
    return inState.Drive(inObject.driveId);
}

const auto kProperties = std::to_array<Property>({
    {cApplication, 'srvM', [](auto& s, auto&, Out o) { MakeBoolean(s.ServerMode(), o); },
     [](auto& s, auto& v) { s.SetServerMode(BooleanFrom(v)); }},
    {cApplication, 'simM', [](auto& s, auto&, Out o) { MakeBoolean(s.Simulating(), o); },
     [](auto& s, auto& v) { s.SetSimulating(BooleanFrom(v)); }},
    {cApplication, 'mInf',
     [](auto& s, auto&, Out o) { MakeNumber(s.Engine().Probe(s.ChosenDrive()).mediaInfo, o); },
     nullptr},
    {cApplication, 'cDrv', [](auto& s, auto&, Out o) { MakeText(s.ChosenDrive(), o); },
     [](auto& s, auto& v) { s.ChooseDrive(TextFrom(v)); }},
    {cApplication, 'pnam', [](auto&, auto&, Out o) { MakeText(kName, o); }, nullptr},
    {cApplication, 'vers', [](auto&, auto&, Out o) { MakeText(kVersion, o); }, nullptr},
    {cApplication, 'pisf', [](auto&, auto&, Out o) { MakeBoolean(IsInFront(), o); }, nullptr},

    {kDiscClass, 'sCod', [](auto& s, auto&, Out o) { MakeNumber(s.Progress().status, o); },
     nullptr},
    {kDiscClass, 'sTxt', [](auto& s, auto&, Out o) { MakeStatusText(s.Progress().text, o); },
     nullptr},
    {kDiscClass, 'DRsi', [](auto& s, auto&, Out o) { MakeNumber(s.Engine().ContentKiB(), o); },
     nullptr},
    {kDiscClass, 'pnam', [](auto& s, auto&, Out o) { MakeText(s.Disc().volumeName, o); },
     [](auto& s, auto& v) { s.SetVolumeName(TextFrom(v)); }},
    {kDiscClass, 'pcls', [](auto& s, auto&, Out o) { MakeCode(typeType, s.Disc().kind, o); },
     nullptr},
    {kDiscClass, 'oPth', [](auto& s, auto&, Out o) { MakeText(s.Disc().outputPath, o); },
     [](auto& s, auto& v) { s.SetOutputPath(TextFrom(v)); }},
    {kDiscClass, 'oRpl', [](auto& s, auto&, Out o) { MakeBoolean(s.Disc().replace, o); },
     [](auto& s, auto& v) { s.SetReplace(BooleanFrom(v)); }},
    {kDiscClass, 'phas',
     [](auto& s, auto&, Out o) { MakeCode(typeEnumerated, PhaseCode(s.Progress().phase), o); },
     nullptr},
    {kDiscClass, 'pcnt', [](auto& s, auto&, Out o) { MakeNumber(s.Progress().percent, o); },
     nullptr},
    {kDiscClass, 'bDon', [](auto& s, auto&, Out o) { MakeBigNumber(s.Progress().bytesDone, o); },
     nullptr},
    {kDiscClass, 'bTot', [](auto& s, auto&, Out o) { MakeBigNumber(s.Progress().bytesTotal, o); },
     nullptr},
    {kDiscClass, 'rate',
     [](auto& s, auto&, Out o) { MakeBigNumber(s.Progress().bytesPerSecond, o); }, nullptr},
    {kDiscClass, 'nFil', [](auto& s, auto&, Out o) { MakeNumber(s.Job().result.nodes, o); },
     nullptr},
    {kDiscClass, 'rept', [](auto& s, auto&, Out o) { MakeTextList(s.Job().result.report, o); },
     nullptr},
    {kDiscClass, 'vfyd', [](auto& s, auto&, Out o) { MakeBoolean(s.Job().result.verified, o); },
     nullptr},
    {kDiscClass, 'siml', [](auto& s, auto&, Out o) { MakeBoolean(s.Job().result.simulated, o); },
     nullptr},
    {kDiscClass, 'rPth', [](auto& s, auto&, Out o) { MakeText(s.Job().result.path, o); }, nullptr},
    {kDiscClass, 'eCod', [](auto& s, auto&, Out o) { MakeNumber(s.Progress().errorCode, o); },
     nullptr},
    {kDiscClass, 'eTxt', [](auto& s, auto&, Out o) { MakeText(s.Progress().errorText, o); },
     nullptr},

    {kDriveClass, 'ID  ', [](auto&, auto& d, Out o) { MakeText(d.driveId, o); }, nullptr},
    {kDriveClass, 'pnam', [](auto& s, auto& d, Out o) { MakeText(Drive(s, d).name, o); }, nullptr},
    {kDriveClass, 'dKnd',
     [](auto& s, auto& d,
        Out o) { MakeCode(typeEnumerated, Drive(s, d).isBurner ? 'burn' : 'imag', o); },
     nullptr},
    {kDriveClass, 'mInf', [](auto& s, auto& d, Out o) { MakeNumber(Drive(s, d).mediaInfo, o); },
     nullptr},
    {kDriveClass, 'spac', [](auto& s, auto& d, Out o) { MakeBigNumber(Drive(s, d).space, o); },
     nullptr},
});

const Property& Find(const Object& inObject) {
    const auto* found =
        std::find_if(kProperties.begin(), kProperties.end(), [&](const Property& property) {
            return property.objectClass == inObject.objectClass &&
                   property.code == inObject.property;
        });
    if (found == kProperties.end()) LException::Throw(errAENoSuchObject);
    return *found;
}

}  // namespace

void GetProperty(RecorderState& inState, const Object& inObject, StAEDescriptor& outValue) {
    Find(inObject).get(inState, inObject, outValue);
}

void SetProperty(RecorderState& inState, const Object& inObject, const AEDesc& inValue) {
    const Property& property = Find(inObject);
    if (property.set == nullptr) LException::Throw(errAENotModifiable);
    property.set(inState, inValue);
}

bool MustWaitFor(RecorderState& inState, const Object& inObject) {
    return inObject.objectClass == DescType(kDiscClass) && inObject.property == 'DRsi' &&
           inState.Engine().Measuring();
}

}  // namespace recorder
