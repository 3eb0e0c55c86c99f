// Numbers and truth values: to one another, to text and from it.
#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/coercions/coercion.h"

namespace carbon {
namespace {

constexpr size_t kExtendedSize = 10;
constexpr SInt32 kExtendedBias = 16383;

// A value between two types: exact while it is whole, else as wide as a machine number gets.
struct Number {
    bool isWhole;
    SInt64 whole;
    long double real;

    static Number Whole(SInt64 inValue) { return {true, inValue, 0}; }
    static Number Real(long double inValue) { return {false, 0, inValue}; }
    long double AsReal() const { return isWhole ? static_cast<long double>(whole) : real; }
};

struct NumberType {
    DescType type;
    size_t size;
    SInt64 least;  // of whole types; both 0 for the others
    SInt64 most;
};
template <typename T>
constexpr NumberType WholeType(DescType inType) {
    return {inType, sizeof(T), std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
}
constexpr std::array kTypes = {
    WholeType<SInt16>(typeSInt16),
    WholeType<SInt32>(typeSInt32),
    WholeType<UInt32>(typeUInt32),
    WholeType<SInt64>(typeSInt64),
    NumberType{typeIEEE32BitFloatingPoint, sizeof(float), 0, 0},
    NumberType{typeIEEE64BitFloatingPoint, sizeof(double), 0, 0},
    NumberType{typeExtended, kExtendedSize, 0, 0},
};

const NumberType* TypeOf(DescType inType) {
    for (const auto& type : kTypes)
        if (type.type == inType) return &type;
    return nullptr;
}

template <typename Float, typename Bits>
long double ReadFloat(const UInt8* inBytes) {
    return std::bit_cast<Float>(ReadBigEndian<Bits>(inBytes));
}

// Sign and 15 bits of exponent, then 64 bits of significand with its leading one written out.
long double ReadExtended(const UInt8* inBytes) {
    const auto head = ReadBigEndian<UInt16>(inBytes);
    const auto significand = ReadBigEndian<UInt64>(inBytes + sizeof head);
    const SInt32 exponent = head & 0x7FFF;
    long double value = 0;
    if (exponent == 0x7FFF)
        value = significand << 1 == 0 ? std::numeric_limits<long double>::infinity()
                                      : std::numeric_limits<long double>::quiet_NaN();
    else
        value = std::ldexp(static_cast<long double>(significand),
                           (exponent == 0 ? 1 : exponent) - kExtendedBias - 63);
    return head & 0x8000 ? -value : value;
}

void WriteExtended(UInt8* outBytes, long double inValue) {
    SInt32 exponent = 0;
    UInt64 significand = 0;
    if (std::isnan(inValue) || std::isinf(inValue)) {
        exponent = 0x7FFF;
        significand = std::isnan(inValue) ? UInt64(3) << 62 : UInt64(1) << 63;
    } else if (inValue != 0) {
        const long double fraction = std::frexp(std::fabs(inValue), &exponent);
        exponent += kExtendedBias - 1;
        if (exponent > 0) significand = static_cast<UInt64>(std::ldexp(fraction, 64));
        exponent = std::max(exponent, 0);  // what is smaller than any normal number is zero
    }
    const auto sign = std::signbit(inValue) ? UInt16(0x8000) : UInt16(0);
    WriteBigEndian(outBytes, UInt16(sign | UInt16(exponent)));
    WriteBigEndian(outBytes + sizeof(UInt16), significand);
}

std::optional<Number> ReadNumber(DescType inType, Bytes inData) {
    const NumberType* type = TypeOf(inType);
    if (!type || inData.size() != type->size) return std::nullopt;
    const UInt8* data = inData.data();
    switch (inType) {
        case typeSInt16:
            return Number::Whole(ReadBigEndian<SInt16>(data));
        case typeSInt32:
            return Number::Whole(ReadBigEndian<SInt32>(data));
        case typeUInt32:
            return Number::Whole(ReadBigEndian<UInt32>(data));
        case typeSInt64:
            return Number::Whole(ReadBigEndian<SInt64>(data));
        case typeIEEE32BitFloatingPoint:
            return Number::Real(ReadFloat<float, UInt32>(data));
        case typeIEEE64BitFloatingPoint:
            return Number::Real(ReadFloat<double, UInt64>(data));
        default:
            return Number::Real(ReadExtended(data));
    }
}

// The nearest whole number, halves away from zero.
std::optional<SInt64> Rounded(const Number& inNumber) {
    if (inNumber.isWhole) return inNumber.whole;
    constexpr long double kLimit = 9223372036854775808.0L;
    const long double rounded = std::round(inNumber.real);
    if (!(rounded >= -kLimit && rounded < kLimit)) return std::nullopt;
    return static_cast<SInt64>(rounded);
}

bool FitsFloat(long double inValue, long double inMost) {
    return !std::isfinite(inValue) || std::fabs(inValue) <= inMost;
}

// The bytes of a whole number are the last ones of its 64.
bool WriteWhole(const NumberType& inType, const Number& inNumber, UInt8* outBytes) {
    const auto whole = Rounded(inNumber);
    if (!whole || *whole < inType.least || *whole > inType.most) return false;
    UInt8 wide[sizeof(SInt64)];
    WriteBigEndian(wide, *whole);
    std::memcpy(outBytes, wide + sizeof wide - inType.size, inType.size);
    return true;
}

bool WriteNumber(const NumberType& inType, const Number& inNumber, UInt8* outBytes) {
    if (inType.most != 0) return WriteWhole(inType, inNumber, outBytes);
    const long double real = inNumber.AsReal();
    if (inType.type == typeIEEE32BitFloatingPoint) {
        if (!FitsFloat(real, FLT_MAX)) return false;
        WriteBigEndian(outBytes, std::bit_cast<UInt32>(static_cast<float>(real)));
    } else if (inType.type == typeIEEE64BitFloatingPoint) {
        if (!FitsFloat(real, DBL_MAX)) return false;
        WriteBigEndian(outBytes, std::bit_cast<UInt64>(static_cast<double>(real)));
    } else {
        WriteExtended(outBytes, real);
    }
    return true;
}

std::string_view Trimmed(std::string_view inText) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const size_t begin = inText.find_first_not_of(kBlanks);
    if (begin == inText.npos) return {};
    return inText.substr(begin, inText.find_last_not_of(kBlanks) + 1 - begin);
}

template <typename T>
std::optional<T> Parsed(std::string_view inText) {
    T value{};
    const auto [end, error] = std::from_chars(inText.data(), inText.data() + inText.size(), value);
    if (error != std::errc() || end != inText.data() + inText.size()) return std::nullopt;
    return value;
}

std::optional<Number> ParseNumber(std::string_view inText) {
    constexpr size_t kLongest = 1000;
    std::string_view text = Trimmed(inText);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    const std::string_view digits = text.starts_with('-') ? text.substr(1) : text;
    const bool beginsWell =
        !digits.empty() && (digits[0] == '.' || (digits[0] >= '0' && digits[0] <= '9'));
    if (!beginsWell || text.size() > kLongest) return std::nullopt;
    if (const auto whole = Parsed<SInt64>(text)) return Number::Whole(*whole);
    if (const auto real = Parsed<long double>(text)) return Number::Real(*real);
    return std::nullopt;
}

std::optional<Number> NumberFromText(const Item& inItem) {
    TemporaryDesc text;
    if (Deliver(inItem, typeUTF8Text, text.Get()) != noErr) return std::nullopt;
    const Bytes data = ItemOf(*text).content;
    return ParseNumber({reinterpret_cast<const char*>(data.data()), data.size()});
}

// As short as reading it back allows, in the precision that the number came with.
OSErr TextFromNumber(const Number& inNumber, DescType inFrom, DescType inTo, AEDesc* outDesc) {
    char text[64];
    std::to_chars_result end{text, std::errc()};
    if (inNumber.isWhole)
        end = std::to_chars(text, text + sizeof text, inNumber.whole);
    else if (!std::isfinite(inNumber.real))
        return errAECoercionFail;
    else if (inFrom == typeIEEE32BitFloatingPoint)
        end = std::to_chars(text, text + sizeof text, static_cast<float>(inNumber.real));
    else if (inFrom == typeIEEE64BitFloatingPoint)
        end = std::to_chars(text, text + sizeof text, static_cast<double>(inNumber.real));
    else
        end = std::to_chars(text, text + sizeof text, inNumber.real);
    const Bytes bytes(reinterpret_cast<const UInt8*>(text), size_t(end.ptr - text));
    return Deliver({typeUTF8Text, Kind::Leaf, bytes}, inTo, outDesc);
}

OSErr MakeNumber(const Number& inNumber, DescType inType, AEDesc* outDesc) {
    const NumberType* type = TypeOf(inType);
    UInt8 bytes[16];
    if (!type || !WriteNumber(*type, inNumber, bytes)) return errAECoercionFail;
    *outDesc = {inType, HandleOf(Storage::OfLeaf(inType, {bytes, type->size}))};
    return noErr;
}

OSErr MakeBoolean(bool inValue, AEDesc* outDesc) {
    const UInt8 value = inValue;
    *outDesc = {typeBoolean, HandleOf(Storage::OfLeaf(typeBoolean, {&value, 1}))};
    return noErr;
}

OSErr CoerceBoolean(Bytes inData, DescType inType, AEDesc* outDesc) {
    if (inData.size() != 1) return errAECoercionFail;
    if (IsNumberType(inType)) return MakeNumber(Number::Whole(inData[0] != 0), inType, outDesc);
    if (inType != typeEnumerated) return errAECoercionFail;
    UInt8 code[sizeof(DescType)];
    WriteBigEndian(code, UInt32(inData[0] != 0 ? typeTrue : typeFalse));
    *outDesc = {inType, HandleOf(Storage::OfLeaf(inType, code))};
    return noErr;
}

}  // namespace

bool IsNumberType(DescType inType) {
    return TypeOf(inType) != nullptr;
}

OSErr CoerceNumber(const Item& inItem, DescType inType, AEDesc* outDesc) {
    if (inItem.type == typeBoolean) return CoerceBoolean(inItem.content, inType, outDesc);
    if (inType == typeBoolean && (inItem.type == typeTrue || inItem.type == typeFalse))
        return MakeBoolean(inItem.type == typeTrue, outDesc);
    if (IsTextType(inItem.type) && IsNumberType(inType)) {
        const auto number = NumberFromText(inItem);
        return number ? MakeNumber(*number, inType, outDesc) : OSErr(errAECoercionFail);
    }
    const auto number = ReadNumber(inItem.type, inItem.content);
    if (!number) return errAECoercionFail;
    if (IsTextType(inType)) return TextFromNumber(*number, inItem.type, inType, outDesc);
    if (inType != typeBoolean) return MakeNumber(*number, inType, outDesc);
    const long double value = number->AsReal();
    if (value != 0 && value != 1) return errAECoercionFail;
    return MakeBoolean(value == 1, outDesc);
}

}  // namespace carbon
