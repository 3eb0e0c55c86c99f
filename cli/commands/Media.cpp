// Owns `vantor media`, `vantor blank` and `vantor eject`: the disc in the chosen drive.
#include <array>
#include <cstdio>

#include "Commands.h"
#include "Failure.h"
#include "Json.h"
#include "Output.h"
#include "Recorder.h"
#include "Session.h"
#include "vantor/api/Vantor.h"

namespace cli {
namespace {

constexpr SInt32 kBlank = 0x100, kAppendable = 0x200, kRewritable = 0x400;

std::string KindOfMedium(SInt32 inInfo) {
    static constexpr std::array kKinds = {"",       "CD-R",   "CD-RW",   "DVD-R", "DVD+R",
                                          "DVD-RW", "DVD+RW", "DVD-RAM", "BD-R",  "BD-RE"};
    const auto kind = static_cast<size_t>(inInfo & 0xFF);
    if (inInfo == 0) return "none";
    if (kind == 127) return "image file";
    return kind > 0 && kind < kKinds.size() ? kKinds[kind] : "other disc";
}

std::string Describe(SInt32 inInfo) {
    if (inInfo == 0) return "no disc";
    std::string text = KindOfMedium(inInfo);
    if ((inInfo & kBlank) != 0) text += ", blank";
    if ((inInfo & kAppendable) != 0) text += ", appendable";
    if ((inInfo & kRewritable) != 0) text += ", rewritable";
    return text;
}

Json AsJson(SInt32 inInfo) {
    return {{"info", inInfo},
            {"kind", KindOfMedium(inInfo)},
            {"blank", (inInfo & kBlank) != 0},
            {"appendable", (inInfo & kAppendable) != 0},
            {"rewritable", (inInfo & kRewritable) != 0}};
}

}  // namespace

void ShowMedia(bool inJson) {
    Session session;
    SInt32 info = 0, kib = 0;
    ThrowIfFailed(VantorGetMediaInfo(&info), "read the media information");
    ThrowIfFailed(VantorGetDiscSize(&kib), "read the disc size");
    const std::string drive = GetText(kApplication, 'cDrv');
    if (inJson) {
        Json json = AsJson(info);
        json["drive"] = drive;
        json["added_kib"] = kib;
        PrintJson(json);
        return;
    }
    std::printf("%s: %s\n", drive.c_str(), Describe(info).c_str());
    std::printf("Added so far: %s\n", Bytes(SInt64{kib} * 1024).c_str());
}

void RequestBlank(bool inJson) {
    Session session;
    SInt32 info = 0;
    ThrowIfFailed(VantorRequestBlankDisc(&info), "get a blank disc");
    if (inJson)
        PrintJson(AsJson(info));
    else
        std::printf("%s\n", Describe(info).c_str());
}

void Eject(bool inJson) {
    Session session;
    ThrowIfFailed(VantorEjectDisc(), "eject the disc");
    if (inJson)
        PrintJson({{"ejected", true}});
    else
        std::printf("Ejected.\n");
}

}  // namespace cli
