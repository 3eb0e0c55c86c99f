// Texts beside ICU: names of 32 characters, such as a file browser shows, and a text of 64
// thousand; and the way of a status text from a reply to the host's buffer beside a GVariant.
//
//   texts [--json] [--seconds S] [WHAT...]
//
// WHAT: compare, order, find, replace, convert, status. The figures are nanoseconds a name, a text
// or a reply. Both sides of a conversion make, and dispose, a text of their own.
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>
#include <glib.h>
#include <unicode/ucnv.h>
#include <unicode/ucol.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <random>

#include "cpu_time.h"
#include "vantor/strings/TCFString.h"

using namespace bench;

namespace {

constexpr size_t kNames = 1024;

void Check(UErrorCode inError, const char* inWhat) {
    if (U_SUCCESS(inError)) return;
    std::fprintf(stderr, "texts: %s: %s\n", inWhat, u_errorName(inError));
    std::exit(1);
}

template <class T>
void Keep(const T& inValue) {
    asm volatile("" : : "r,m"(inValue) : "memory");
}

// Equal beginnings, a number, an ending; with accents one letter in eight is of MacRoman's upper
// half.
std::vector<std::string> Names(bool inAccents) {
    std::mt19937 random(7);
    std::vector<std::string> names;
    while (names.size() < kNames) {
        std::string name = (random() & 1) ? "Session " : "session ";
        name += std::to_string(random() % 2000) + ' ';
        while (name.size() < 28) {
            const bool isAccented = inAccents && random() % 8 == 0;
            name += char(isAccented ? 0x80 + random() % 32 : 'a' + random() % 26);
        }
        names.push_back(name + ".doc");
    }
    return names;
}

UConverter* MacRoman() {
    UErrorCode error = U_ZERO_ERROR;
    static UConverter* const converter = ucnv_open("macintosh", &error);
    Check(error, "ucnv_open");
    return converter;
}

// The same names three times over.
struct Sets {
    explicit Sets(bool inAccents) : bytes(Names(inAccents)) {
        for (const std::string& name : bytes) {
            UErrorCode error = U_ZERO_ERROR;
            icu.emplace_back(name.data(), int32_t(name.size()), MacRoman(), error);
            Check(error, "convert");
            ours.emplace_back(name.c_str(), kCFStringEncodingMacRoman);
        }
    }
    std::vector<std::string> bytes;
    std::vector<icu::UnicodeString> icu;
    std::vector<TCFString> ours;
};

// Calls an operation with each name and its neighbour.
template <class Operation>
void EachPair(const std::string& inName, double inSeconds, Operation inOperation) {
    const double all = MedianCpuTime(inSeconds, [&] {
        for (size_t i = 0; i < kNames; ++i) inOperation(i, (i + 1) % kNames);
    });
    emit(inName, all / kNames, "ns");
}

template <class Operation>
void Each(const std::string& inName, double inSeconds, Operation inOperation) {
    emit(inName, MedianCpuTime(inSeconds, inOperation), "ns");
}

void Compare(double inSeconds) {
    const Sets names(false);
    EachPair("ours.compare", inSeconds, [&](size_t i, size_t j) {
        Keep(CFStringCompare(names.ours[i].StringRef(), names.ours[j].StringRef(), 0));
    });
    EachPair("icu.compare", inSeconds,
             [&](size_t i, size_t j) { Keep(names.icu[i].compareCodePointOrder(names.icu[j])); });
    EachPair("ours.compare_case", inSeconds, [&](size_t i, size_t j) {
        Keep(CFStringCompare(names.ours[i].StringRef(), names.ours[j].StringRef(),
                             kCFCompareCaseInsensitive));
    });
    EachPair("icu.compare_case", inSeconds, [&](size_t i, size_t j) {
        Keep(names.icu[i].caseCompare(names.icu[j], U_FOLD_CASE_DEFAULT));
    });
}

void Order(double inSeconds, const std::string& inWhat, bool inAccents) {
    const Sets names(inAccents);
    UErrorCode error = U_ZERO_ERROR;
    UCollator* collator = ucol_open("en", &error);
    ucol_setAttribute(collator, UCOL_NUMERIC_COLLATION, UCOL_ON, &error);
    ucol_setAttribute(collator, UCOL_STRENGTH, UCOL_SECONDARY, &error);
    Check(error, "ucol_open");
    EachPair("ours." + inWhat, inSeconds, [&](size_t i, size_t j) {
        const auto &one = names.icu[i], &other = names.icu[j];
        Keep(FinderCompare(UniCharCount(one.length()),
                           reinterpret_cast<const UniChar*>(one.getBuffer()),
                           UniCharCount(other.length()),
                           reinterpret_cast<const UniChar*>(other.getBuffer()), false, true));
    });
    EachPair("icu." + inWhat, inSeconds, [&](size_t i, size_t j) {
        const auto &one = names.icu[i], &other = names.icu[j];
        Keep(ucol_strcoll(collator, one.getBuffer(), one.length(), other.getBuffer(),
                          other.length()));
    });
    ucol_close(collator);
}

std::string LongText() {
    std::string text;
    for (const std::string& name : Names(false)) text += name + " ^0 " + name.substr(0, 24) + "\n";
    return text;
}

void Find(double inSeconds) {
    const std::string bytes = LongText() + "needle";
    const TCFString text(bytes.c_str(), kCFStringEncodingASCII);
    const icu::UnicodeString icuText(bytes.c_str()), icuNeedle("needle");
    Each("ours.find", inSeconds,
         [&] { Keep(CFStringFind(text.StringRef(), CFSTR("needle"), 0).location); });
    Each("icu.find", inSeconds, [&] { Keep(icuText.indexOf(icuNeedle)); });
}

void Replace(double inSeconds) {
    const std::string bytes = LongText();
    const TCFString text(bytes.c_str(), kCFStringEncodingASCII);
    const icu::UnicodeString icuText(bytes.c_str()), from("^0"), to("parameter");
    Each("ours.replace", inSeconds, [&] {
        CFMutableStringRef copy = CFStringCreateMutableCopy(nullptr, 0, text.StringRef());
        CFStringFindAndReplace(copy, CFSTR("^0"), CFSTR("parameter"),
                               CFRangeMake(0, CFStringGetLength(copy)), 0);
        CFRelease(copy);
    });
    Each("icu.replace", inSeconds, [&] {
        icu::UnicodeString copy(icuText);
        copy.findAndReplace(from, to);
        Keep(copy.getBuffer());
    });
}

void Convert(double inSeconds) {
    const Sets names(true);
    EachPair("ours.from_macroman", inSeconds, [&](size_t i, size_t) {
        const std::string& name = names.bytes[i];
        CFRelease(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(name.data()),
                                          CFIndex(name.size()), kCFStringEncodingMacRoman, false));
    });
    EachPair("icu.from_macroman", inSeconds, [&](size_t i, size_t) {
        UErrorCode error = U_ZERO_ERROR;
        const std::string& name = names.bytes[i];
        const icu::UnicodeString text(name.data(), int32_t(name.size()), MacRoman(), error);
        Keep(text.getBuffer());
    });
    EachPair("ours.to_macroman", inSeconds, [&](size_t i, size_t) {
        char buffer[64];
        CFStringGetCString(names.ours[i].StringRef(), buffer, 64, kCFStringEncodingMacRoman);
        Keep(&buffer);
    });
    EachPair("icu.to_macroman", inSeconds, [&](size_t i, size_t) {
        UErrorCode error = U_ZERO_ERROR;
        char buffer[64];
        ucnv_fromUChars(MacRoman(), buffer, 64, names.icu[i].getBuffer(), names.icu[i].length(),
                        &error);
        Keep(&buffer);
    });
    EachPair("ours.to_utf8", inSeconds, [&](size_t i, size_t) {
        char buffer[128];
        CFStringGetCString(names.ours[i].StringRef(), buffer, 128, kCFStringEncodingUTF8);
        Keep(&buffer);
    });
    EachPair("icu.to_utf8", inSeconds, [&](size_t i, size_t) {
        UErrorCode error = U_ZERO_ERROR;
        char buffer[128];
        int32_t length;
        u_strToUTF8(buffer, 128, &length, names.icu[i].getBuffer(), names.icu[i].length(), &error);
        Keep(&buffer);
    });
}

constexpr char kStatus[] = "Writing track 3 of 12 (57 MB of 612 MB)";

// A reply as it comes from the recorder: its direct object is the text.
AppleEvent StatusReply() {
    const ProcessSerialNumber self = {0, kCurrentProcess};
    AEAddressDesc target;
    AppleEvent reply;
    OSErr error = AECreateDesc(typeProcessSerialNumber, &self, sizeof self, &target);
    if (error == noErr)
        error = AECreateAppleEvent(kCoreEventClass, kAEAnswer, &target, kAutoGenerateReturnID,
                                   kAnyTransactionID, &reply);
    if (error == noErr)
        error = AEPutParamPtr(&reply, keyDirectObject, typeChar, kStatus, sizeof kStatus - 1);
    if (error != noErr) std::exit(1);
    AEDisposeDesc(&target);
    return reply;
}

void Status(double inSeconds) {
    AppleEvent reply = StatusReply();
    GVariantDict fields;
    g_variant_dict_init(&fields, nullptr);
    g_variant_dict_insert(&fields, "text", "s", kStatus);
    GVariant* variant = g_variant_ref_sink(g_variant_dict_end(&fields));
    Each("ours.status", inSeconds, [&] {
        for (int i = 0; i < 100; ++i) {
            Str255 text;
            DescType type;
            Size size = 0;
            AEGetParamPtr(&reply, keyDirectObject, typeChar, &type, text + 1, 255, &size);
            text[0] = UInt8(size);
            Keep(&text);
        }
    });
    Each("gvariant.status", inSeconds, [&] {
        for (int i = 0; i < 100; ++i) {
            char buffer[256];
            const char* text = nullptr;
            if (g_variant_lookup(variant, "text", "&s", &text)) std::strcpy(buffer, text);
            Keep(&buffer);
        }
    });
    g_variant_unref(variant);
    AEDisposeDesc(&reply);
}

}  // namespace

int main(int argc, char** argv) {
    auto args = arguments(argc, argv);
    const double seconds = std::atof(take_option(args, "--seconds", "0.2").c_str());
    const auto wants = [&](const char* inWhat) {
        return args.empty() || std::find(args.begin(), args.end(), inWhat) != args.end();
    };
    if (wants("compare")) Compare(seconds);
    if (wants("order")) Order(seconds, "order", false);
    if (wants("order")) Order(seconds, "order_accents", true);
    if (wants("find")) Find(seconds);
    if (wants("replace")) Replace(seconds);
    if (wants("convert")) Convert(seconds);
    if (wants("status")) Status(seconds);
    return 0;
}
